#pragma once

#include "printing/reportdocument_p.h"

#include <PanelKestrin/panelkestrin_export.h>

#include <QDialog>
#include <functional>
#include <memory>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QScrollArea;

namespace PanelKestrin {

class ReportPageView;
class ReportPaginator;
class WaitCursor;

// Adds the next few bands of a report to the paginator; returns false once nothing is left.
using ReportFeed = std::function<bool(ReportPaginator &paginator)>;
// What the preview's Print and Export buttons do with the report on show.
using ReportPreviewAction = std::function<void(const ReportDocument &document, QWidget *preview)>;

// The report preview window: one page at a time, with page navigation ("Page 3 of 12"), a zoom
// (fit width, fit page, 50% to 200%), Print and Export buttons, and the keys PgUp / PgDn
// (previous / next page), Home / End (first / last page), Ctrl+P (print), Ctrl++ / Ctrl+-
// (zoom in / out) and Esc (close).
//
// A long report is laid out while the window shows: startLayout feeds the paginator in slices
// between events, under the wait cursor, with a progress line and a Cancel button. Cancelling
// keeps the pages laid out so far.
class PANELKESTRIN_EXPORT ReportPreview : public QDialog
{
    Q_OBJECT

public:
    explicit ReportPreview(QWidget *parent = nullptr);
    ~ReportPreview() override;

    // Shows a report already laid out, from its first page.
    void setDocument(ReportDocument document);
    const ReportDocument &document() const { return m_document; }

    // Lays a report out while the window runs its events: feed is called again and again until
    // it returns false, then the document is shown. An error raised by feed or the paginator is
    // reported (guardEvent) and closes the window.
    void startLayout(std::unique_ptr<ReportPaginator> paginator, ReportFeed feed);
    bool isLayingOut() const { return bool(m_feed); }
    // Stops a layout in progress and shows the pages laid out so far.
    void cancelLayout();
    bool layoutCancelled() const { return m_cancelled; }

    // The page shown, from 1; setting it keeps it within the report.
    int currentPage() const { return m_page + 1; }
    void setCurrentPage(int page);
    int pageCount() const { return m_document.pageCount(); }

    enum ZoomMode { FitWidth = -1, FitPage = -2 };
    // A percentage of the page's real size, or FitWidth / FitPage.
    void setZoom(int percentOrMode);
    int zoomSetting() const;
    // The factor the page is drawn at now (1 = real size).
    qreal zoomFactor() const;
    void zoomIn();
    void zoomOut();

    // Print: without a handler the Print button and Ctrl+P are disabled.
    void setPrintHandler(ReportPreviewAction handler);
    void print();
    // Export: asks for a file name (GetSaveFileName) and writes PDF, text (.txt) or a document
    // (.rtf, .doc) by the name's suffix.
    void exportReport();

    // Opens the window: maximised for window state 2, minimised for 1, else normal; modal
    // through the modal runner (returns its result) or modeless (returns 0 at once).
    int showReport(int windowState, bool modal);

signals:
    // The document is ready to view: set, or laid out to its end or to a cancel.
    void documentReady();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    // Closing the window stops a layout in progress.
    void done(int result) override;

private:
    void createControls();
    void createShortcuts();
    void showDocument(ReportDocument document);
    void layoutStep();
    void stopLayout();
    void endLayout(bool cancelled);
    void showPage();
    void applyZoom();
    void updateControls();
    static void exportByFileName(const ReportDocument &document, QWidget *preview);

    ReportDocument m_document;
    int m_page = 0;
    std::unique_ptr<ReportPaginator> m_paginator;
    ReportFeed m_feed;
    std::unique_ptr<WaitCursor> m_wait;
    bool m_cancelled = false;
    ReportPreviewAction m_print;

    QPushButton *cmdFirst, *cmdPrevious, *cmdNext, *cmdLast;
    QLabel *lblPage;
    QComboBox *cmbZoom;
    QPushButton *cmdPrint, *cmdExport, *cmdClose;
    QProgressBar *prgLayout;
    QLabel *lblLayout;
    QPushButton *cmdCancel;
    QScrollArea *scrollArea;
    ReportPageView *pageView;
};

} // namespace PanelKestrin
