#include <PanelKestrin/recordset.h>

#include "data/connection_p.h"
#include "data/dataerror_p.h"
#include "data/recordset_p.h"
#include "data/resultloader_p.h"
#include "data/sqltext_p.h"

#include <QCoreApplication>
#include <QSqlDriver>

#include <cmath>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Recordset");

// The statement that reads a table: the name as written when it is a plain (possibly
// schema-qualified) name, so the engine folds its case as usual, quoted otherwise.
QString tableStatement(const QString &table, const QSqlDatabase &database)
{
    const QString name = table.trimmed();
    if (isBareTableName(name))
        return QStringLiteral("SELECT * FROM ") + name;
    return QStringLiteral("SELECT * FROM ") + database.driver()->escapeIdentifier(name, QSqlDriver::TableName);
}

} // namespace

int RecordsetPrivate::columnIndex(const QVariant &indexOrName, const QString &source) const
{
    const int id = indexOrName.metaType().id();
    if (id == QMetaType::QString || id == QMetaType::QByteArray) {
        const QString name = indexOrName.toString();
        const auto it = columnByName.constFind(name.toLower());
        if (it == columnByName.cend())
            raiseDataError(ErrItemNotFound,
                           QCoreApplication::translate("PanelKestrin::Recordset", "There is no field named \"%1\".")
                               .arg(name),
                           source);
        return it.value();
    }
    const double number = indexOrName.toDouble();
    if (!isNumberVariant(indexOrName) || std::floor(number) != number)
        raiseDataError(ErrBadArguments,
                       QCoreApplication::translate("PanelKestrin::Recordset",
                                                   "A field is named by its name or its position, not by \"%1\".")
                           .arg(indexOrName.toString()),
                       source);
    if (number < 0 || number >= columns.size())
        raiseDataError(ErrItemNotFound,
                       QCoreApplication::translate("PanelKestrin::Recordset",
                                                   "There is no field %1; the fields are numbered 0 to %2.")
                           .arg(number)
                           .arg(columns.size() - 1),
                       source);
    return int(number);
}

Recordset::Recordset(QObject *parent) : QObject(parent), d(std::make_unique<RecordsetPrivate>()) {}

Recordset::~Recordset() = default;

void Recordset::checkOpen() const
{
    if (!d->open)
        raiseDataError(ErrObjectClosed, tr("The recordset is closed."), kSource);
}

void Recordset::checkClosed(const char *property) const
{
    if (d->open)
        raiseDataError(ErrObjectOpen, tr("%1 cannot be changed while the recordset is open.")
                                          .arg(QString::fromLatin1(property)),
                       kSource);
}

void Recordset::checkCurrent(const QString &operation) const
{
    checkOpen();
    if (BOF() || adoEOF())
        raiseDataError(ErrNoCurrentRecord,
                       tr("%1 needs a current record, but the recordset is at %2.")
                           .arg(operation,
                                d->rowCount == 0 ? tr("BOF and EOF (it has no records)")
                                                 : (BOF() ? QStringLiteral("BOF") : QStringLiteral("EOF"))),
                       kSource);
}

qint32 Recordset::CursorType() const { return d->cursorType; }
qint32 Recordset::CursorLocation() const { return d->cursorLocation; }
qint32 Recordset::LockType() const { return d->lockType; }
Connection *Recordset::ActiveConnection() const { return d->activeConnection; }
QString Recordset::Source() const { return d->source; }

void Recordset::setCursorType(qint32 CursorType)
{
    checkClosed("CursorType");
    d->cursorType = CursorType;
}

void Recordset::setCursorLocation(qint32 CursorLocation)
{
    checkClosed("CursorLocation");
    d->cursorLocation = CursorLocation;
}

void Recordset::setLockType(qint32 LockType)
{
    checkClosed("LockType");
    d->lockType = LockType;
}

void Recordset::setActiveConnection(Connection *ActiveConnection)
{
    d->activeConnection = ActiveConnection;
}

void Recordset::setSource(const QString &Source)
{
    checkClosed("Source");
    d->source = Source;
}

void Recordset::Open(const QString &Source, Connection *ActiveConnection, qint32 CursorType, qint32 LockType,
                     qint32 Options)
{
    checkClosed("The source");
    if (!Source.isEmpty())
        d->source = Source;
    if (ActiveConnection)
        d->activeConnection = ActiveConnection;
    if (CursorType != -1)
        d->cursorType = CursorType;
    if (LockType != -1)
        d->lockType = LockType;

    const bool table = Options == CommandTable || Options == CommandTableDirect;
    if (!table && Options != -1 && Options != CommandText && Options != CommandUnknown)
        raiseDataError(ErrBadArguments,
                       tr("Options %1 is not a command type this recordset can open (1 text, 2 table, 8 unknown).")
                           .arg(Options),
                       kSource);
    if (d->source.trimmed().isEmpty())
        raiseDataError(ErrBadArguments, tr("The recordset has no Source to open."), kSource);
    Connection *connection = d->activeConnection;
    if (!connection || !connection->State())
        raiseDataError(ErrConnectionInvalid,
                       connection ? tr("Its ActiveConnection is closed.") : tr("It has no ActiveConnection."),
                       kSource);
    ConnectionPrivate *session = ConnectionAccess::get(connection);
    const QString statement = (table || isBareTableName(d->source)) ? tableStatement(d->source, session->database)
                                                                    : d->source;
    LoadedResult result = loadResult(*session, statement);
    d->statement = statement;
    if (result.returnedRows)
        adopt(std::move(result));
}

void Recordset::adopt(LoadedResult &&result)
{
    d->columns = std::move(result.columns);
    d->rows = std::move(result.rows);
    d->rowCount = result.rowCount;
    d->columnByName.clear();
    for (int i = int(d->columns.size()) - 1; i >= 0; --i)
        d->columnByName.insert(d->columns.at(i).Name.toLower(), i);
    d->position = d->rowCount > 0 ? 1 : 0;
    d->open = true;
}

void Recordset::Requery()
{
    checkOpen();
    if (d->statement.isEmpty())
        raiseDataError(ErrNotCapable, tr("A schema recordset cannot be run again; open the schema again."), kSource);
    Connection *connection = d->activeConnection;
    if (!connection || !connection->State())
        raiseDataError(ErrConnectionInvalid,
                       connection ? tr("Its ActiveConnection is closed.") : tr("It has no ActiveConnection."),
                       kSource);
    LoadedResult result = loadResult(*ConnectionAccess::get(connection), d->statement);
    if (!result.returnedRows)
        raiseDataError(ErrCommandFailed, tr("The source no longer returns rows (statement: %1)").arg(d->statement),
                       kSource);
    adopt(std::move(result));
}

void Recordset::Close()
{
    checkOpen();
    d->open = false;
    d->columns.clear();
    d->columnByName.clear();
    d->rows = VariantMatrix();
    d->rowCount = 0;
    d->position = 0;
}

qint32 Recordset::State() const
{
    return d->open ? 1 : 0;
}

bool Recordset::BOF() const
{
    checkOpen();
    return d->rowCount == 0 || d->position == 0;
}

bool Recordset::adoEOF() const
{
    checkOpen();
    return d->rowCount == 0 || d->position > d->rowCount;
}

qint32 Recordset::RecordCount() const
{
    checkOpen();
    return d->rowCount;
}

qint32 Recordset::AbsolutePosition() const
{
    checkOpen();
    if (d->rowCount == 0)
        return PositionUnknown;
    if (d->position == 0)
        return PositionBOF;
    if (d->position > d->rowCount)
        return PositionEOF;
    return d->position;
}

QString Recordset::DataMember() const
{
    checkOpen();
    return d->columns.isEmpty() ? QString() : d->columns.first().BaseTable;
}

PanelKestrin::Fields Recordset::Fields() const
{
    checkOpen();
    return PanelKestrin::Fields(this);
}

void Recordset::move(int target, qint32 reason)
{
    qint32 adReason = reason;
    qint32 adStatus = StatusOK;
    emit WillMove(adReason, adStatus);
    if (adStatus == StatusCancel)
        raiseDataError(ErrOperationCancelled, tr("A WillMove handler refused the move."), kSource);
    checkOpen(); // a handler may have closed it
    d->position = qBound(0, target, d->rowCount + 1);
    adReason = reason;
    adStatus = StatusOK;
    emit MoveComplete(adReason, adStatus);
}

void Recordset::MoveFirst()
{
    checkOpen();
    if (d->rowCount == 0)
        raiseDataError(ErrNoCurrentRecord, tr("MoveFirst: the recordset has no records."), kSource);
    move(1, ReasonMoveFirst);
}

void Recordset::MoveLast()
{
    checkOpen();
    if (d->rowCount == 0)
        raiseDataError(ErrNoCurrentRecord, tr("MoveLast: the recordset has no records."), kSource);
    move(d->rowCount, ReasonMoveLast);
}

void Recordset::MoveNext()
{
    if (adoEOF())
        raiseDataError(ErrNoCurrentRecord, tr("MoveNext: the recordset is already at EOF."), kSource);
    move(d->position + 1, ReasonMoveNext);
}

void Recordset::MovePrevious()
{
    if (BOF())
        raiseDataError(ErrNoCurrentRecord, tr("MovePrevious: the recordset is already at BOF."), kSource);
    move(d->position - 1, ReasonMovePrevious);
}

QVariant Recordset::Bookmark() const
{
    checkCurrent(QStringLiteral("Bookmark"));
    return QVariant(double(d->position));
}

void Recordset::setBookmark(const QVariant &Bookmark)
{
    checkOpen();
    const double value = Bookmark.toDouble();
    if (!isNumberVariant(Bookmark) || std::floor(value) != value || value < 1 || value > d->rowCount)
        raiseDataError(ErrBadArguments,
                       tr("\"%1\" is not the bookmark of a record of this recordset.").arg(Bookmark.toString()),
                       kSource);
    move(int(value), ReasonMove);
}

} // namespace PanelKestrin
