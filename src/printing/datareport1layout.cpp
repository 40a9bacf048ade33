#include "printing/datareport1layout_p.h"

#include "printing/datareport1_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportparameters.h"

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/runtimeerror.h>

#include <QDate>

namespace PanelKestrin {

namespace {

constexpr int LinesPerSlice = 500;
const QString LineField = QStringLiteral("prntxt");

} // namespace

DataReport1Layout::DataReport1Layout(Recordset *recordset)
{
    if (!recordset)
        throw RuntimeError(ErrObjectNotSet, QStringLiteral("DataReport1 has no recordset to report on"),
                           QStringLiteral("DataReport1"));
    const Fields fields = recordset->Fields();
    int field = -1;
    for (int i = 0; i < fields.Count() && field < 0; ++i)
        if (fields.Item(i).Name().compare(LineField, Qt::CaseInsensitive) == 0)
            field = i;
    if (field < 0)
        throw RuntimeError(ErrItemNotFound,
                           QStringLiteral("DataReport1: the report's data has no field \"prntxt\"; the query must "
                                          "deliver each report line in a text column of that name"),
                           QStringLiteral("DataReport1"));
    auto lines = std::make_shared<QStringList>();
    if (recordset->RecordCount() > 0) {
        const VariantMatrix values = recordset->GetRows(-1, Recordset::BookmarkFirst, field);
        for (int r = values.LBound(2); r <= values.UBound(2); ++r)
            lines->append(values.value(values.LBound(1), r).toString());
    }
    m_lines = std::move(lines);
}

std::unique_ptr<ReportPaginator> DataReport1Layout::createPaginator(const ReportPageSetup &setup) const
{
    const QFont font = fixedPitchReportFont(10);
    const QString key = QString::fromLatin1(DataReportSettingsKey);
    const ReportParameters &parameters = reportParameters();
    const QString today = QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy"));
    auto paginator = std::make_unique<ReportPaginator>(setup);
    paginator->setTitle(parameters.rpttitle);
    paginator->setTextFont(font);
    paginator->setReportHeader(ReportBand()
                                   .addText(font, GetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("Organisation")))
                                   .addText(font, QString())
                                   .addText(font, QString())
                                   .addText(font, GetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("Town")))
                                   .addText(font, parameters.rpttitle.toUpper())
                                   .addText(font, QStringLiteral("Date:") + today));
    paginator->setPageHeader(ReportBand().addRule().addText(font, parameters.rptheading.toUpper()).addRule());
    paginator->setPageFooter(ReportBand().addSpace(4).addText(font, QStringLiteral("Page: %p")));
    return paginator;
}

ReportFeed DataReport1Layout::feed() const
{
    const QFont font = fixedPitchReportFont(10);
    return [lines = m_lines, font, next = 0](ReportPaginator &paginator) mutable {
        const int end = qMin(next + LinesPerSlice, int(lines->size()));
        for (; next < end; ++next)
            paginator.addDetail(ReportBand().addText(font, lines->at(next)));
        return next < lines->size();
    };
}

} // namespace PanelKestrin
