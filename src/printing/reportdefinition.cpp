#include "printing/reportdefinition_p.h"

#include "printing/reportdefinitionlines_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace PanelKestrin {

std::optional<ReportSortKey> ReportSortKey::parse(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral(R"(^\s*([+-]?)\s*(?:\{\s*(?:[^{}.]*\.)?\s*([^{}.]+?)\s*\}|([A-Za-z_][A-Za-z0-9_]*))\s*$)"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    ReportSortKey key;
    key.descending = match.captured(1) == QLatin1String("-");
    key.field = match.captured(2).isEmpty() ? match.captured(3) : match.captured(2);
    return key;
}

int ReportDefinition::columnIndex(const QString &field) const
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns.at(i).field.compare(field, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

namespace {

// Reads the JSON tree of a report file, keeping the path to the value being read so that an
// error can name its line.
class DefinitionReader
{
public:
    DefinitionReader(const QByteArray &text, const QString &fileName) : m_text(text), m_fileName(fileName) {}

    ReportDefinition read()
    {
        QJsonParseError parseError;
        const QJsonDocument document = QJsonDocument::fromJson(m_text, &parseError);
        if (parseError.error != QJsonParseError::NoError)
            failAtLine(reportLineAtOffset(m_text, parseError.offset), syntaxExpectation(parseError));
        if (!document.isObject())
            failAtLine(1, QStringLiteral("expected the report as one JSON object { ... }"));

        ReportDefinition def;
        def.fileName = m_fileName;
        const QJsonObject root = document.object();
        checkKeys(root, {"title", "source", "page", "fontSize", "reportHeader", "pageHeader", "pageFooter",
                         "columns", "sort", "groups", "totals"});
        def.title = text(root, "title");
        readSource(root, def);
        readPage(root, def);
        if (root.contains(QLatin1String("fontSize")))
            def.fontSize = positive(root, "fontSize", 4, 72);
        def.reportHeader = textLines(root, "reportHeader");
        def.pageHeader = textLines(root, "pageHeader");
        def.pageFooter = textLines(root, "pageFooter");
        readColumns(root, def);
        for (const QString &entry : texts(root, "sort", [](const QString &t) { return ReportSortKey::parse(t).has_value(); },
                                          QStringLiteral("a sort field such as \"+customer\" or \"-{orders.odate}\"")))
            def.sort.append(*ReportSortKey::parse(entry));
        readGroups(root, def);
        readTotals(root, def);
        return def;
    }

private:
    // Steps into a member or element for the time it lives.
    class Step
    {
    public:
        Step(DefinitionReader &reader, const QVariant &step) : m_reader(reader) { m_reader.m_path.append(step); }
        ~Step() { m_reader.m_path.removeLast(); }
        Step(const Step &) = delete;
        Step &operator=(const Step &) = delete;

    private:
        DefinitionReader &m_reader;
    };

    static QString syntaxExpectation(const QJsonParseError &error)
    {
        switch (error.error) {
        case QJsonParseError::MissingNameSeparator:
            return QStringLiteral("expected a colon \":\" after the key");
        case QJsonParseError::UnterminatedObject:
            return QStringLiteral("expected \",\" and the next key, or \"}\" closing the object");
        case QJsonParseError::UnterminatedArray:
        case QJsonParseError::MissingValueSeparator:
            return QStringLiteral("expected \",\" and the next value, or \"]\" closing the list");
        case QJsonParseError::IllegalValue:
            return QStringLiteral("expected a value: a text in double quotes, a number, true, false, null, { or [");
        case QJsonParseError::GarbageAtEnd:
            return QStringLiteral("expected the end of the file after the report's object");
        case QJsonParseError::UnterminatedString:
            return QStringLiteral("expected the double quote closing the text");
        case QJsonParseError::IllegalNumber:
        case QJsonParseError::TerminationByNumber:
            return QStringLiteral("expected a number");
        default:
            return QStringLiteral("expected JSON (%1)").arg(error.errorString());
        }
    }

    [[noreturn]] void failAtLine(int line, const QString &what) const
    {
        throw RuntimeError(ErrReportFileFormat,
                           QStringLiteral("Report file %1, line %2: %3").arg(m_fileName).arg(line).arg(what),
                           QStringLiteral("ReportDefinition"));
    }

    [[noreturn]] void fail(const QString &what) const
    {
        QString where;
        for (const QVariant &step : m_path) {
            if (step.typeId() != QMetaType::QString)
                where += QStringLiteral("[%1]").arg(step.toInt());
            else
                where += (where.isEmpty() ? QString() : QStringLiteral(".")) + step.toString();
        }
        failAtLine(reportLineOfPath(m_text, m_path), where.isEmpty() ? what : QStringLiteral("%1: %2").arg(where, what));
    }

    void checkKeys(const QJsonObject &object, std::initializer_list<const char *> known)
    {
        QStringList names;
        for (const char *name : known)
            names << QString::fromLatin1(name);
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (!names.contains(it.key())) {
                Step step(*this, it.key());
                fail(QStringLiteral("unknown key; expected one of %1").arg(names.join(QStringLiteral(", "))));
            }
        }
    }

    QJsonObject object(const QJsonValue &value, std::initializer_list<const char *> known)
    {
        if (!value.isObject())
            fail(QStringLiteral("expected an object { ... }"));
        const QJsonObject result = value.toObject();
        checkKeys(result, known);
        return result;
    }

    QString text(const QJsonObject &object, const char *key, bool required = false)
    {
        const QString name = QString::fromLatin1(key);
        Step step(*this, name);
        if (!object.contains(name)) {
            if (required)
                fail(QStringLiteral("missing; expected a text"));
            return QString();
        }
        if (!object.value(name).isString())
            fail(QStringLiteral("expected a text in double quotes"));
        return object.value(name).toString();
    }

    qreal positive(const QJsonObject &object, const char *key, qreal low, qreal high)
    {
        Step step(*this, QString::fromLatin1(key));
        const QJsonValue value = object.value(QString::fromLatin1(key));
        if (!value.isDouble() || value.toDouble() < low || value.toDouble() > high)
            fail(QStringLiteral("expected a number from %1 to %2").arg(low).arg(high));
        return value.toDouble();
    }

    QJsonArray array(const QJsonObject &object, const char *key)
    {
        Step step(*this, QString::fromLatin1(key));
        const QJsonValue value = object.value(QString::fromLatin1(key));
        if (value.isUndefined())
            return QJsonArray();
        if (!value.isArray())
            fail(QStringLiteral("expected a list [ ... ]"));
        return value.toArray();
    }

    // A list of texts, each checked by valid.
    template<typename Check>
    QStringList texts(const QJsonObject &object, const char *key, Check valid, const QString &expected)
    {
        const QJsonArray items = array(object, key);
        Step step(*this, QString::fromLatin1(key));
        QStringList result;
        for (int i = 0; i < items.size(); ++i) {
            Step item(*this, i);
            if (!items.at(i).isString() || !valid(items.at(i).toString()))
                fail(QStringLiteral("expected %1").arg(expected));
            result << items.at(i).toString();
        }
        return result;
    }

    Qt::Alignment alignment(const QJsonObject &object)
    {
        const QString align = text(object, "align");
        Step step(*this, QStringLiteral("align"));
        if (align.isEmpty() || align == QLatin1String("left"))
            return Qt::AlignLeft;
        if (align == QLatin1String("right"))
            return Qt::AlignRight;
        if (align == QLatin1String("center"))
            return Qt::AlignHCenter;
        fail(QStringLiteral("expected \"left\", \"right\" or \"center\""));
    }

    // Lines given as texts or as { "text": ..., "align": ... }.
    QVector<ReportTextLine> textLines(const QJsonObject &parent, const char *key)
    {
        const QJsonArray items = array(parent, key);
        Step step(*this, QString::fromLatin1(key));
        QVector<ReportTextLine> lines;
        for (int i = 0; i < items.size(); ++i) {
            Step item(*this, i);
            if (items.at(i).isString()) {
                lines.append({items.at(i).toString(), Qt::AlignLeft});
                continue;
            }
            if (!items.at(i).isObject())
                fail(QStringLiteral("expected a text or an object { \"text\": ..., \"align\": ... }"));
            const QJsonObject line = object(items.at(i), {"text", "align"});
            lines.append({text(line, "text", true), alignment(line)});
        }
        return lines;
    }

    void readSource(const QJsonObject &root, ReportDefinition &def)
    {
        Step step(*this, QStringLiteral("source"));
        if (!root.contains(QLatin1String("source")))
            fail(QStringLiteral("missing; expected { \"table\": ... } or { \"query\": ... }"));
        const QJsonObject source = object(root.value(QLatin1String("source")), {"table", "query"});
        def.table = text(source, "table").trimmed();
        def.query = text(source, "query").trimmed();
        if (def.table.isEmpty() == def.query.isEmpty())
            fail(QStringLiteral("expected either a \"table\" or a \"query\", not both and not none"));
    }

    void readPage(const QJsonObject &root, ReportDefinition &def)
    {
        if (!root.contains(QLatin1String("page")))
            return;
        Step step(*this, QStringLiteral("page"));
        const QJsonObject page = object(root.value(QLatin1String("page")), {"size", "orientation", "margins"});
        ReportPageSetup setup;
        const QString size = text(page, "size");
        if (!size.isEmpty()) {
            static const QHash<QString, QPageSize::PageSizeId> sizes = {
                {QStringLiteral("a3"), QPageSize::A3}, {QStringLiteral("a4"), QPageSize::A4},
                {QStringLiteral("a5"), QPageSize::A5}, {QStringLiteral("letter"), QPageSize::Letter},
                {QStringLiteral("legal"), QPageSize::Legal}};
            if (!sizes.contains(size.toLower())) {
                Step at(*this, QStringLiteral("size"));
                fail(QStringLiteral("expected \"A3\", \"A4\", \"A5\", \"Letter\" or \"Legal\""));
            }
            setup.pageSize = QPageSize(sizes.value(size.toLower()));
        }
        const QString orientation = text(page, "orientation");
        if (orientation == QLatin1String("landscape")) {
            setup.orientation = QPageLayout::Landscape;
        } else if (!orientation.isEmpty() && orientation != QLatin1String("portrait")) {
            Step at(*this, QStringLiteral("orientation"));
            fail(QStringLiteral("expected \"portrait\" or \"landscape\""));
        }
        if (page.contains(QLatin1String("margins"))) {
            const qreal margin = positive(page, "margins", 0, 144);
            setup.margins = QMarginsF(margin, margin, margin, margin);
        }
        def.page = setup;
    }

    void readColumnWidth(const QJsonObject &column, ReportColumnDefinition &result)
    {
        Step step(*this, QStringLiteral("width"));
        const QJsonValue width = column.value(QLatin1String("width"));
        static const QRegularExpression points(QStringLiteral(R"(^\s*(\d+(?:\.\d+)?)\s*pt\s*$)"));
        const QRegularExpressionMatch match = points.match(width.toString());
        if (width.isDouble() && width.toDouble() >= 1 && width.toDouble() <= 500) {
            result.width = width.toDouble();
        } else if (width.isString() && match.hasMatch() && match.captured(1).toDouble() >= 1) {
            result.width = match.captured(1).toDouble();
            result.widthInPoints = true;
        } else if (!width.isUndefined()) {
            fail(QStringLiteral("expected a number of characters (1 to 500) or points such as \"72pt\""));
        }
    }

    void readColumns(const QJsonObject &root, ReportDefinition &def)
    {
        const QJsonArray columns = array(root, "columns");
        Step step(*this, QStringLiteral("columns"));
        if (columns.isEmpty())
            fail(QStringLiteral("expected a list of at least one column"));
        for (int i = 0; i < columns.size(); ++i) {
            Step item(*this, i);
            const QJsonObject column = object(columns.at(i), {"field", "heading", "width", "align", "format"});
            ReportColumnDefinition result;
            result.field = text(column, "field", true).trimmed();
            if (result.field.isEmpty()) {
                Step at(*this, QStringLiteral("field"));
                fail(QStringLiteral("expected the name of a field"));
            }
            result.heading = column.contains(QLatin1String("heading")) ? text(column, "heading") : result.field;
            readColumnWidth(column, result);
            result.alignment = alignment(column);
            result.format = text(column, "format");
            def.columns.append(result);
        }
    }

    // Fields that must be columns of the report, to be shown under them.
    QStringList columnFields(const QJsonObject &object, const char *key, const ReportDefinition &def)
    {
        return texts(object, key, [&def](const QString &field) { return def.columnIndex(field) >= 0; },
                     QStringLiteral("the field of one of the report's columns"));
    }

    void readGroups(const QJsonObject &root, ReportDefinition &def)
    {
        const QJsonArray groups = array(root, "groups");
        Step step(*this, QStringLiteral("groups"));
        for (int i = 0; i < groups.size(); ++i) {
            Step item(*this, i);
            const QJsonObject group = object(groups.at(i), {"field", "header", "footer", "subtotals"});
            ReportGroupDefinition result;
            result.field = text(group, "field", true).trimmed();
            if (result.field.isEmpty()) {
                Step at(*this, QStringLiteral("field"));
                fail(QStringLiteral("expected the name of a field"));
            }
            result.header = group.contains(QLatin1String("header")) ? text(group, "header") : QStringLiteral("{value}");
            result.footer = text(group, "footer");
            result.subtotals = columnFields(group, "subtotals", def);
            def.groups.append(result);
        }
    }

    void readTotals(const QJsonObject &root, ReportDefinition &def)
    {
        if (!root.contains(QLatin1String("totals")))
            return;
        Step step(*this, QStringLiteral("totals"));
        const QJsonObject totals = object(root.value(QLatin1String("totals")), {"label", "columns"});
        def.totalsLabel = totals.contains(QLatin1String("label")) ? text(totals, "label") : QStringLiteral("Total");
        def.totals = columnFields(totals, "columns", def);
    }

    const QByteArray &m_text;
    QString m_fileName;
    QVector<QVariant> m_path;
};

} // namespace

ReportDefinition ReportDefinition::parse(const QByteArray &text, const QString &fileName)
{
    return DefinitionReader(text, fileName).read();
}

ReportDefinition ReportDefinition::read(const QString &fileName)
{
    QFile file(fileName);
    if (fileName.trimmed().isEmpty() || !file.open(QIODevice::ReadOnly))
        throw RuntimeError(ErrReportFileNotFound,
                           QStringLiteral("Report file %1 cannot be read: %2")
                               .arg(fileName.trimmed().isEmpty() ? QStringLiteral("(no name)") : fileName,
                                    fileName.trimmed().isEmpty() ? QStringLiteral("no file name given")
                                                                 : file.errorString()),
                           QStringLiteral("ReportDefinition"));
    return parse(file.readAll(), fileName);
}

} // namespace PanelKestrin
