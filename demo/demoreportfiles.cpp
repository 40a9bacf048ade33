#include "demoreportfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace DemoReportFiles {

QString folder()
{
    const QDir binary(QCoreApplication::applicationDirPath());
    for (const QString &candidate : {QStringLiteral("reports"), QStringLiteral("../share/panelkestrin-demo/reports")}) {
        const QFileInfo info(binary.filePath(candidate));
        if (info.isDir())
            return info.canonicalFilePath();
    }
    return QString();
}

QString path(const QString &fileName)
{
    const QString dir = folder();
    return dir.isEmpty() ? QString() : QDir(dir).filePath(fileName);
}

} // namespace DemoReportFiles
