// panelkestrin-writeidl <file>: writes the library's type description (PanelKestrin.idl); the
// build runs it so that the installed description always matches the identity table.

#include <PanelKestrin/idlwriter.h>

#include <QFile>
#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output.idl>\n", argv[0]);
        return 2;
    }
    QFile file(QString::fromLocal8Bit(argv[1]));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        std::fprintf(stderr, "%s: cannot write %s\n", argv[0], argv[1]);
        return 1;
    }
    file.write(PanelKestrin::TypeLibraryIdl().toUtf8());
    return 0;
}
