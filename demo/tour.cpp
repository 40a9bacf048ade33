#include "tour.h"

#include "mainwindow.h"
#include "tourreports.h"

#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/usercontrol1.h>

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QRegularExpression>
#include <QTextStream>

namespace {

bool shoot(QWidget *widget, const QDir &dir, const QString &name, QTextStream &out)
{
    QApplication::processEvents();
    const QString path = dir.filePath(name + QStringLiteral(".png"));
    if (!widget->grab().save(path)) {
        out << "could not write " << path << Qt::endl;
        return false;
    }
    out << "wrote " << QDir::toNativeSeparators(path) << Qt::endl;
    return true;
}

// The command toolbars as the forms show them, one picture each (toolbar-<class>.png).
bool shootToolbars(QWidget *form, const QDir &dir, QTextStream &out)
{
    bool ok = true;
    const auto shootEach = [&](auto *toolbar) {
        if (toolbar)
            ok = shoot(toolbar, dir, QStringLiteral("toolbar-") + QString::fromLatin1(toolbar->metaObject()->className())
                                         .section(QLatin1String("::"), -1).toLower(), out) && ok;
    };
    shootEach(form->findChild<PanelKestrin::TrnControl *>());
    shootEach(form->findChild<PanelKestrin::UserControl1 *>());
    shootEach(form->findChild<PanelKestrin::GridPanel *>());
    return ok;
}

QString fileName(int index, const QString &title)
{
    QString slug = title.toLower();
    slug.replace(QRegularExpression(QStringLiteral("[^a-z0-9]+")), QStringLiteral("-"));
    return QStringLiteral("%1-%2").arg(index, 2, 10, QLatin1Char('0')).arg(slug);
}

} // namespace

int runTour(MainWindow &window, const QString &folder)
{
    QTextStream out(stdout);
    QDir dir(folder);
    if (!dir.mkpath(QStringLiteral("."))) {
        out << "cannot create the tour folder " << folder << Qt::endl;
        return 1;
    }
    out << "Tour: screenshots in " << QDir::toNativeSeparators(dir.absolutePath()) << Qt::endl;
    window.show();
    bool ok = shoot(&window, dir, QStringLiteral("00-main-window"), out);
    for (int i = 0; i < window.forms().size(); ++i) {
        QWidget *form = window.openForm(i);
        ok = shoot(form, dir, fileName(i + 1, window.forms().at(i).title), out) && ok;
        ok = shootToolbars(form, dir, out) && ok;
        form->close();
    }
    ok = writeTourReports(dir, out) && ok;
    return ok ? 0 : 1;
}
