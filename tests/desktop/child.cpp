#include <cstdio>
#include <fstream>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

// Writes its arguments and its environment to the file named by the first argument, one per line
// and all at once, and waits to be stopped. It ends with the test that started it.
int main(int argc, char *argv[])
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argc < 2)
        return 1;
    const std::string temporary = std::string(argv[1]) + ".part";
    std::ofstream report(temporary);
    for (int i = 2; i < argc; ++i)
        report << "argument " << argv[i] << '\n';
    for (char **variable = environ; *variable; ++variable)
        report << "variable " << *variable << '\n';
    report.close();
    std::rename(temporary.c_str(), argv[1]);
    for (;;)
        pause();
}
