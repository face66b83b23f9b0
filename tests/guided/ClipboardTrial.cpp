// One side of an exchange of cells with another program over the desktop's clipboard:
//     clipboard_trial put FILE    offers the cells of FILE and stays until it is ended
//     clipboard_trial get         prints the cells that the clipboard holds
#include <QApplication>
#include <QTimer>
#include <fstream>
#include <iostream>
#include <iterator>

#include "qt/services/QtClipboard.h"

int main(int argc, char** argv) {
    const QApplication loop(argc, argv);
    const QStringList words = QApplication::arguments();
    kd::QtClipboard clipboard;
    if (words.size() == 3 && words[1] == QLatin1String("put")) {
        std::ifstream file(argv[2], std::ios::binary);
        clipboard.SetText(std::string(std::istreambuf_iterator<char>(file), {}));
        std::cout << "offered" << std::endl;
        return QApplication::exec();
    }
    if (words.size() == 2 && words[1] == QLatin1String("get")) {
        QTimer::singleShot(0, [&clipboard] {
            std::cout << clipboard.GetText();
            QApplication::quit();
        });
        return QApplication::exec();
    }
    std::cerr << "usage: clipboard_trial put FILE | get\n";
    return 2;
}
