#include "mainwindow.h"

#include <PanelKestrin/errorreporter.h>

#include <QCommandLinkButton>
#include <QLabel>
#include <QStatusBar>
#include <QVBoxLayout>

MainWindow::MainWindow(DemoContext &context, const QString &database, QWidget *parent)
    : QMainWindow(parent), m_context(context), m_forms(demoForms())
{
    setWindowTitle(tr("PanelKestrin order entry"));
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    auto *intro = new QLabel(tr("<b>PanelKestrin</b> is a library of controls for the data-entry forms of business "
                                "applications: command toolbars, an editable grid, date boxes and report printing. "
                                "Each form below is a host form of this small order-entry shop built on them."),
                             central);
    intro->setWordWrap(true);
    layout->addWidget(intro);
    for (int i = 0; i < m_forms.size(); ++i) {
        auto *button = new QCommandLinkButton(m_forms.at(i).title, m_forms.at(i).description, central);
        button->setObjectName(QStringLiteral("openForm_%1").arg(i));
        layout->addWidget(button);
        connect(button, &QCommandLinkButton::clicked, this, [this, i] {
            PanelKestrin::guardEvent(QStringLiteral("MainWindow.openForm"), [this, i] { openForm(i); });
        });
    }
    layout->addStretch(1);
    auto *databaseLabel = new QLabel(tr("Database: %1").arg(database), central);
    databaseLabel->setObjectName(QStringLiteral("database"));
    databaseLabel->setTextFormat(Qt::PlainText);
    databaseLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(databaseLabel);
    setCentralWidget(central);
    statusBar()->showMessage(tr("Open a form: click it, or Tab to it and press Space."));
    resize(640, 440);
}

QWidget *MainWindow::openForm(int index)
{
    QWidget *form = m_forms.at(index).create(m_context);
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->setWindowFlag(Qt::Window);
    form->show();
    form->activateWindow();
    return form;
}
