#include "mainwindow.h"

#include <PanelKestrin/errorreporter.h>

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

MainWindow::MainWindow(DemoContext &context, const QString &database, QWidget *parent)
    : QMainWindow(parent), m_context(context), m_forms(demoForms())
{
    setWindowTitle(tr("PanelKestrin order entry"));
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    auto *label = new QLabel(tr("&Forms"), central);
    m_list = new QListWidget(central);
    label->setBuddy(m_list);
    for (const DemoForm &form : m_forms) {
        auto *item = new QListWidgetItem(form.title, m_list);
        item->setToolTip(form.description);
    }
    auto *open = new QPushButton(tr("&Open"), central);
    layout->addWidget(label);
    layout->addWidget(m_list, 1);
    layout->addWidget(open, 0, Qt::AlignRight);
    setCentralWidget(central);
    statusBar()->showMessage(tr("Database: %1").arg(database));

    const auto openCurrent = [this] {
        PanelKestrin::guardEvent(QStringLiteral("MainWindow.openForm"), [this] {
            if (m_list->currentRow() >= 0)
                openForm(m_list->currentRow());
        });
    };
    connect(m_list, &QListWidget::itemActivated, this, openCurrent);
    connect(open, &QPushButton::clicked, this, openCurrent);
    m_list->setCurrentRow(0);
    resize(520, 360);
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
