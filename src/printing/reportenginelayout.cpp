#include "printing/reportenginelayout_p.h"

#include "printing/reportlayout_p.h"

#include <PanelKestrin/format.h>

#include <QFontMetricsF>
#include <QImage>

#include <algorithm>

namespace PanelKestrin {

namespace {

// Rows added to the paginator per slice.
constexpr int RowsPerSlice = 200;

// The width of one character of a fixed-pitch font in points, measured the way the paginator
// measures text.
qreal characterWidth(const QFont &font)
{
    constexpr int resolution = 1200;
    QImage device(1, 1, QImage::Format_Mono);
    device.setDotsPerMeterX(qRound(resolution / 0.0254));
    device.setDotsPerMeterY(qRound(resolution / 0.0254));
    return QFontMetricsF(font, &device).horizontalAdvance(u'0') * 72.0 / resolution;
}

double numberOf(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return 0;
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? number : 0;
}

// band with the lines added under what it holds.
ReportBand textLines(ReportBand band, const QFont &font, const QVector<ReportTextLine> &lines)
{
    for (const ReportTextLine &line : lines)
        band.addLine(font, {ReportCell{line.text, 0, 0, line.alignment}});
    return band;
}

} // namespace

ReportEngineLayout::ReportEngineLayout(ReportDefinition definition, ReportRows rows)
    : m_definition(std::move(definition)), m_rows(std::move(rows)), m_font(fixedPitchReportFont(m_definition.fontSize))
{
    m_bold = m_font;
    m_bold.setBold(true);
    const qreal character = characterWidth(m_font);
    QStringList summed = m_definition.totals;
    for (const ReportGroupDefinition &group : m_definition.groups)
        summed += group.subtotals;
    qreal x = 0;
    for (int i = 0; i < m_definition.columns.size(); ++i) {
        const ReportColumnDefinition &column = m_definition.columns.at(i);
        const int field = m_rows.requireField(column.field, QStringLiteral("column %1").arg(i + 1), m_definition.fileName);
        const qreal width = column.widthInPoints ? column.width : column.width * character;
        const bool isSummed = std::any_of(summed.cbegin(), summed.cend(), [&](const QString &name) {
            return m_definition.columnIndex(name) == i;
        });
        m_columns.append({field, x, width, isSummed});
        x += width + character;
    }
    for (const ReportGroupDefinition &group : m_definition.groups)
        m_groupFields.append(m_rows.requireField(group.field, QStringLiteral("group"), m_definition.fileName));
    m_totals.fill(0, m_columns.size());
}

std::unique_ptr<ReportPaginator> ReportEngineLayout::createPaginator(const ReportPageSetup &setup) const
{
    auto paginator = std::make_unique<ReportPaginator>(setup);
    paginator->setTitle(m_definition.title);
    paginator->setTextFont(m_font);
    if (!m_definition.reportHeader.isEmpty())
        paginator->setReportHeader(textLines(ReportBand(), m_bold, m_definition.reportHeader).addSpace(4));
    QVector<QString> headings;
    for (const ReportColumnDefinition &column : m_definition.columns)
        headings.append(column.heading);
    paginator->setPageHeader(
        textLines(ReportBand(), m_font, m_definition.pageHeader).addRule().addLine(m_bold, cells(headings)).addRule());
    if (!m_definition.pageFooter.isEmpty())
        paginator->setPageFooter(textLines(ReportBand().addSpace(4), m_font, m_definition.pageFooter));
    return paginator;
}

QVector<ReportCell> ReportEngineLayout::cells(const QVector<QString> &texts) const
{
    QVector<ReportCell> result;
    result.reserve(m_columns.size());
    for (int i = 0; i < m_columns.size(); ++i)
        result.append({texts.at(i), m_columns.at(i).x, m_columns.at(i).width, m_definition.columns.at(i).alignment});
    return result;
}

QString ReportEngineLayout::columnText(int column, const QVariant &value) const
{
    if (!value.isValid() || value.isNull())
        return QString();
    return Format(value, m_definition.columns.at(column).format);
}

// A footer line: the label at the left, up to the first column summed, and each sum under its
// column in that column's format.
QVector<ReportCell> ReportEngineLayout::sumLine(const QString &label, const QStringList &fields,
                                                const QVector<double> &sums) const
{
    QVector<ReportCell> line;
    qreal labelWidth = 0;
    for (const QString &field : fields) {
        const int column = m_definition.columnIndex(field);
        const qreal x = m_columns.at(column).x;
        labelWidth = labelWidth == 0 ? x : qMin(labelWidth, x);
        line.append({columnText(column, sums.at(column)), x, m_columns.at(column).width,
                     m_definition.columns.at(column).alignment});
    }
    line.prepend({label, 0, labelWidth, Qt::AlignLeft});
    return line;
}

void ReportEngineLayout::openGroups(ReportPaginator &paginator, int from, const QVector<QVariant> &row)
{
    for (int level = from; level < m_groupFields.size(); ++level) {
        const QVariant value = row.at(m_groupFields.at(level));
        m_groupValues.append(value);
        m_groupSums.append(QVector<double>(m_columns.size(), 0));
        const int column = m_definition.columnIndex(m_definition.groups.at(level).field);
        const QString text = column >= 0 ? columnText(column, value) : value.toString();
        paginator.addGroupHeader(ReportBand().addSpace(4).addText(
            m_bold, QString(m_definition.groups.at(level).header).replace(QLatin1String("{value}"), text)));
    }
}

void ReportEngineLayout::closeGroups(ReportPaginator &paginator, int downTo)
{
    while (m_groupValues.size() > downTo) {
        const int level = int(m_groupValues.size()) - 1;
        const ReportGroupDefinition &group = m_definition.groups.at(level);
        if (!group.footer.isEmpty() || !group.subtotals.isEmpty()) {
            const int column = m_definition.columnIndex(group.field);
            const QVariant value = m_groupValues.at(level);
            const QString label = QString(group.footer).replace(
                QLatin1String("{value}"), column >= 0 ? columnText(column, value) : value.toString());
            paginator.addGroupFooter(ReportBand().addLine(m_bold, sumLine(label, group.subtotals, m_groupSums.at(level))));
        }
        m_groupValues.removeLast();
        m_groupSums.removeLast();
    }
}

bool ReportEngineLayout::feed(ReportPaginator &paginator)
{
    if (m_done)
        return false;
    const int end = qMin(m_next + RowsPerSlice, int(m_rows.rows.size()));
    for (; m_next < end; ++m_next) {
        const QVector<QVariant> &row = m_rows.rows.at(m_next);
        int changed = int(m_groupValues.size());
        for (int level = 0; level < m_groupValues.size(); ++level) {
            if (compareReportValues(m_groupValues.at(level), row.at(m_groupFields.at(level))) != 0) {
                changed = level;
                break;
            }
        }
        closeGroups(paginator, changed);
        openGroups(paginator, changed, row);

        QVector<QString> texts;
        texts.reserve(m_columns.size());
        for (int c = 0; c < m_columns.size(); ++c) {
            const QVariant &value = row.at(m_columns.at(c).field);
            texts.append(columnText(c, value));
            if (!m_columns.at(c).summed)
                continue;
            const double number = numberOf(value);
            m_totals[c] += number;
            for (QVector<double> &sums : m_groupSums)
                sums[c] += number;
        }
        paginator.addDetail(ReportBand().addLine(m_font, cells(texts)));
    }
    if (m_next < m_rows.rows.size())
        return true;

    closeGroups(paginator, 0);
    if (!m_definition.totals.isEmpty())
        paginator.addReportFooter(ReportBand().addRule().addLine(
            m_bold, sumLine(m_definition.totalsLabel, m_definition.totals, m_totals)));
    m_done = true;
    return false;
}

} // namespace PanelKestrin
