#include <quorvaneshell/pictures/icon.h>
#include <quorvaneshell/search/wordmatch.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

// Whether each of the typed words begins one of the name.
static bool isFound(const QString &name, const QString &typed)
{
    const QStringList words = quorvane::foldedWords(typed);
    const QString text = quorvane::foldedText(name);
    const bool isFound = std::all_of(words.begin(), words.end(), [&text](const QString &word) {
        return quorvane::beginsWord(text, word);
    });
    return isFound;
}

// A button with an icon that is read beside the program, shown while what is typed finds its text.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    auto *input = new QLineEdit;
    auto *button = new QPushButton(QStringLiteral("Network tools"));
    button->setIcon(quorvane::icon(QStringLiteral("image://quorvane/icon/network-wired")));
    auto *watcher = new quorvane::IconWatcher(button);
    QObject::connect(watcher, &quorvane::IconWatcher::iconsRead, button,
                     qOverload<>(&QWidget::update));
    QObject::connect(input, &QLineEdit::textChanged, button, [button](const QString &typed) {
        button->setVisible(isFound(button->text(), typed));
    });
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(input);
    layout->addWidget(button);
    window.show();
    return QApplication::exec();
}
