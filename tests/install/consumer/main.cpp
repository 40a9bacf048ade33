// An outside program using the installed library: opens an in-memory database through the
// recordset API and reads a row back.
#include <PanelKestrin/connection.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    using namespace PanelKestrin;
    try {
        Connection cn;
        cn.Open(QStringLiteral("Provider=SQLite;Data Source=:memory:"));
        cn.Execute(QStringLiteral("CREATE TABLE t (name VARCHAR(10) NOT NULL)"));
        cn.Execute(QStringLiteral("INSERT INTO t VALUES ('ok')"));
        Recordset rs;
        rs.Open(QStringLiteral("SELECT name FROM t"), &cn);
        const QString value = rs.Fields().Item(QStringLiteral("name")).Value().toString();
        std::printf("%s\n", qPrintable(value));
        return value == QLatin1String("ok") ? 0 : 1;
    } catch (const RuntimeError &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
}
