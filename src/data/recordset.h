#pragma once

#include <PanelKestrin/connection.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/variantmatrix.h>

#include <QObject>
#include <QPointer>
#include <QVariant>

#include <memory>

namespace PanelKestrin {

struct RecordsetPrivate;
struct LoadedResult;

// A static client-side cursor in the classic recordset model: Open runs the statement,
// fetches every row and releases the query; navigation, bookmarks, GetRows and the field
// values then work on the rows held here. Any use of a closed recordset raises 3704.
class PANELKESTRIN_EXPORT Recordset : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qint32 CursorType READ CursorType WRITE setCursorType)
    Q_PROPERTY(qint32 CursorLocation READ CursorLocation WRITE setCursorLocation)
    Q_PROPERTY(qint32 LockType READ LockType WRITE setLockType)
    Q_PROPERTY(PanelKestrin::Connection *ActiveConnection READ ActiveConnection WRITE setActiveConnection)
    Q_PROPERTY(QString Source READ Source WRITE setSource)
    Q_PROPERTY(qint32 State READ State)
    Q_PROPERTY(bool BOF READ BOF)
    // EOF is a C library macro; it is lifted here only so the property keeps its name.
#pragma push_macro("EOF")
#undef EOF
    Q_PROPERTY(bool EOF READ adoEOF)
#pragma pop_macro("EOF")
    Q_PROPERTY(qint32 RecordCount READ RecordCount)
    Q_PROPERTY(qint32 AbsolutePosition READ AbsolutePosition)
    Q_PROPERTY(QVariant Bookmark READ Bookmark WRITE setBookmark)
    Q_PROPERTY(QString DataMember READ DataMember)

public:
    // Reasons handed to WillMove and MoveComplete.
    enum EventReason { ReasonMove = 10, ReasonMoveFirst = 12, ReasonMoveNext = 13, ReasonMovePrevious = 14, ReasonMoveLast = 15 };
    Q_ENUM(EventReason)
    // adStatus values: a WillMove handler sets StatusCancel to refuse the move.
    enum EventStatus { StatusOK = 1, StatusCancel = 4 };
    Q_ENUM(EventStatus)
    // GetRows start positions (a double is a bookmark).
    enum BookmarkStart { BookmarkCurrent = 0, BookmarkFirst = 1, BookmarkLast = 2 };
    Q_ENUM(BookmarkStart)
    // Open options: the source is a statement, a table name, or either (told apart by form).
    enum CommandType { CommandUnknown = 8, CommandText = 1, CommandTable = 2, CommandTableDirect = 512 };
    Q_ENUM(CommandType)
    // Absolute positions that are not a row.
    enum PositionEnum { PositionUnknown = -1, PositionBOF = -2, PositionEOF = -3 };
    Q_ENUM(PositionEnum)

    explicit Recordset(QObject *parent = nullptr);
    ~Recordset() override;

    // Stored as set (defaults 0, 2, 1); the cursor is static and client-side whatever they
    // say. Setting them, or Source, while open raises 3705.
    qint32 CursorType() const;
    void setCursorType(qint32 CursorType);
    qint32 CursorLocation() const;
    void setCursorLocation(qint32 CursorLocation);
    qint32 LockType() const;
    void setLockType(qint32 LockType);
    Connection *ActiveConnection() const;
    void setActiveConnection(Connection *ActiveConnection);
    QString Source() const;
    void setSource(const QString &Source);

    // Source: a SELECT statement, or a table name (Options 2, or any single name such as
    // orders or sales.orders), read as every row of the table. Empty arguments (and -1) keep
    // what the properties hold. No connection, or a closed one, raises 3709; a statement the
    // database rejects -2147217900. A statement that returns no rows leaves it closed.
    Q_INVOKABLE void Open(const QString &Source = QString(), PanelKestrin::Connection *ActiveConnection = nullptr,
                          qint32 CursorType = -1, qint32 LockType = -1, qint32 Options = -1);
    // Runs the source again and stands on the first row; on failure the old rows stay.
    Q_INVOKABLE void Requery();
    Q_INVOKABLE void Close();
    // 0 closed, 1 open.
    qint32 State() const;

    bool BOF() const;
    bool adoEOF() const;
    // MoveFirst/MoveLast on an empty recordset, MoveNext at EOF and MovePrevious at BOF raise
    // 3021. Every move raises WillMove first (a handler setting adStatus = 4 cancels it: the
    // position stays and 3712 is raised) and MoveComplete after.
    Q_INVOKABLE void MoveFirst();
    Q_INVOKABLE void MoveLast();
    Q_INVOKABLE void MoveNext();
    Q_INVOKABLE void MovePrevious();
    qint32 RecordCount() const;
    // 1-based row number, or PositionBOF / PositionEOF / PositionUnknown (empty).
    qint32 AbsolutePosition() const;

    // The current row's bookmark (its 1-based position as a double); at BOF/EOF raises 3021.
    QVariant Bookmark() const;
    // Moves to a bookmark (reason 10); anything but the bookmark of a row raises 3001.
    void setBookmark(const QVariant &Bookmark);

    // Rows: -1 for all remaining, or a count. Start: Empty or 0 the current row, 1 the first,
    // 2 the last, a double a bookmark. Fields: Empty for all, a name or index, or a list of
    // them in the order wanted. Returns (field, row) from (0, 0); the cursor then stands on
    // the row after the last one read (EOF when none is left). Raises 3021 when there is no
    // row to start from, 3001 for bad arguments and 3265 for an unknown field.
    Q_INVOKABLE PanelKestrin::VariantMatrix GetRows(qint32 Rows = -1, const QVariant &Start = QVariant(),
                                                    const QVariant &Fields = QVariant());

    PanelKestrin::Fields Fields() const;
    // The table the first column comes from; empty when it is an expression.
    QString DataMember() const;

Q_SIGNALS:
    void WillMove(qint32 &adReason, qint32 &adStatus);
    void MoveComplete(qint32 &adReason, qint32 &adStatus);

private:
    friend class Connection;
    friend struct RecordsetAccess;
    void checkOpen() const;
    void checkClosed(const char *property) const;
    void checkCurrent(const QString &operation) const;
    void move(int target, qint32 reason);
    void adopt(LoadedResult &&result);
    int startRow(const QVariant &Start) const;
    QVector<int> fieldList(const QVariant &Fields) const;

    std::unique_ptr<RecordsetPrivate> d;
};

} // namespace PanelKestrin

