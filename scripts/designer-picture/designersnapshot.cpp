// A Designer plugin that offers no widgets and photographs Designer instead: once the form
// given to Designer shows the library's controls, it enlarges Designer's window, widens the
// widget box and filters it down to the PanelKestrin group, maximizes the form, selects the
// transaction toolbar so that the property editor shows its properties, draws every
// visible top-level window into one picture at its place on the screen, writes it to the file
// named by PK_DESIGNER_SNAPSHOT and quits Designer.
// Used by scripts/designer-picture.sh for the README; never installed.

#include <QApplication>
#include <QDockWidget>
#include <QImage>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QPainter>
#include <QTreeView>
#include <QTimer>
#include <QWidget>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <cstdio>

class DesignerSnapshot : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    DesignerSnapshot()
    {
        m_file = qEnvironmentVariable("PK_DESIGNER_SNAPSHOT");
        if (m_file.isEmpty())
            return;
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, &DesignerSnapshot::tick);
        timer->start(250);
    }

    QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return {}; }

private:
    static bool formShown()
    {
        for (QWidget *w : QApplication::allWidgets()) {
            if (w->isVisible() && w->inherits("PanelKestrin::ToolbarBase"))
                return true;
        }
        return false;
    }

    static bool inside(const QWidget *w, const char *part)
    {
        for (; w; w = w->parentWidget()) {
            if (QByteArray(w->metaObject()->className()).contains(part))
                return true;
        }
        return false;
    }

    static bool inWidgetBox(const QWidget *w) { return inside(w, "WidgetBox"); }

    // The object inspector's row of the toolbar selected, the property editor at its end, where
    // the control's own properties are.
    static void selectToolbar()
    {
        for (QWidget *w : QApplication::allWidgets()) {
            auto *tree = qobject_cast<QTreeView *>(w);
            if (!tree || !tree->isVisible() || !tree->model())
                continue;
            if (inside(tree, "ObjectInspector")) {
                const QModelIndexList rows = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole,
                                                                  QStringLiteral("TrnControl1"), 1, Qt::MatchRecursive);
                if (!rows.isEmpty())
                    tree->setCurrentIndex(rows.first());
            }
        }
    }

    static void scrollPropertyEditor()
    {
        for (QWidget *w : QApplication::allWidgets()) {
            auto *tree = qobject_cast<QTreeView *>(w);
            if (tree && tree->isVisible() && inside(tree, "PropertyEditor"))
                tree->scrollToBottom();
        }
    }

    // Designer's window made large enough to show the form whole, the widget box wide enough for
    // the class names and filtered to the group whose names hold "PanelKestrin", the form maximized.
    static void arrange()
    {
        for (QWidget *w : QApplication::topLevelWidgets()) {
            auto *main = qobject_cast<QMainWindow *>(w);
            if (!main || !main->isVisible())
                continue;
            main->setGeometry(0, 0, 1560, 860);
            for (QDockWidget *dock : main->findChildren<QDockWidget *>()) {
                if (inWidgetBox(dock->widget()))
                    main->resizeDocks({dock}, {260}, Qt::Horizontal);
            }
        }
        for (QWidget *w : QApplication::allWidgets()) {
            auto *edit = qobject_cast<QLineEdit *>(w);
            if (edit && edit->isVisible() && inWidgetBox(edit) && edit->placeholderText().contains(QLatin1String("Filter")))
                edit->setText(QStringLiteral("PanelKestrin"));
            if (auto *form = qobject_cast<QMdiSubWindow *>(w))
                form->showMaximized();
        }
    }

    void tick()
    {
        if (!formShown())
            return;
        switch (m_ticksSinceShown++) {
        case 0: arrange(); return;
        case 1: selectToolbar(); return;
        case 2: scrollPropertyEditor(); return;
        default: break;
        }
        if (m_ticksSinceShown < 5) // a few turns for layouts and the editors to settle
            return;
        QRect desk;
        QList<QWidget *> windows;
        for (QWidget *w : QApplication::topLevelWidgets()) {
            if (w->isVisible() && !w->isMinimized() && w->width() > 50 && w->height() > 50) {
                windows << w;
                desk |= w->frameGeometry();
            }
        }
        QImage picture(desk.size(), QImage::Format_RGB32);
        picture.fill(QColor(0x4A, 0x5A, 0x6A));
        QPainter painter(&picture);
        for (QWidget *w : windows)
            painter.drawPixmap(w->geometry().topLeft() - desk.topLeft(), w->grab());
        painter.end();
        const bool saved = picture.save(m_file);
        std::fprintf(stderr, "%s %s\n", saved ? "wrote" : "could not write", qPrintable(m_file));
        QCoreApplication::exit(saved ? 0 : 1);
    }

    QString m_file;
    int m_ticksSinceShown = 0;
};

#include "designersnapshot.moc"
