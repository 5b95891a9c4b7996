#include <cstdio>
#include <signal.h>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>

// Writes its arguments and its environment to the file named by the first argument, one per line
// and all at once, and waits to be stopped. It ends with the test that started it.
int main(int argc, char *argv[])
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argc < 2)
        return 1;
    const std::string target = argv[1];
    const std::string temporary = target + ".part";
    std::FILE *file = std::fopen(temporary.c_str(), "w");
    if (!file)
        return 1;
    for (int i = 2; i < argc; ++i)
        std::fprintf(file, "argument %s\n", argv[i]);
    for (char **variable = environ; *variable; ++variable)
        std::fprintf(file, "variable %s\n", *variable);
    std::fclose(file);
    std::rename(temporary.c_str(), target.c_str());
    for (;;)
        pause();
}
