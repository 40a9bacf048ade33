#include "typelib/classobject_p.h"

#include <PanelKestrin/controlfactory.h>

#include <QApplication>
#include <QWidget>
#include <cstring>

namespace PanelKestrin {

namespace {

constexpr HRESULT kOk = 0;
constexpr HRESULT kNoInterface = HRESULT(0x80004002);
constexpr HRESULT kPointer = HRESULT(0x80004003);
constexpr HRESULT kNoAggregation = HRESULT(0x80040110);
constexpr HRESULT kNotInitialized = HRESULT(0x800401F0);

const QUuid iidUnknown(QStringLiteral("{00000000-0000-0000-C000-000000000046}"));
const QUuid iidClassFactory(QStringLiteral("{00000001-0000-0000-C000-000000000046}"));
const QUuid iidDispatch(QStringLiteral("{00020400-0000-0000-C000-000000000046}"));

int live = 0;
int locks = 0; // server locks held, also counted in live

} // namespace

QUuid toUuid(const GUID &g)
{
    return QUuid(g.Data1, g.Data2, g.Data3, g.Data4[0], g.Data4[1], g.Data4[2], g.Data4[3], g.Data4[4],
                 g.Data4[5], g.Data4[6], g.Data4[7]);
}

GUID toGuid(const QUuid &u)
{
    GUID g;
    g.Data1 = u.data1;
    g.Data2 = u.data2;
    g.Data3 = u.data3;
    std::memcpy(g.Data4, u.data4, sizeof g.Data4);
    return g;
}

ClassObject::ClassObject(const TypeLibClass &cls) : m_class(cls)
{
    ++live;
}

ClassObject::~ClassObject()
{
    --live;
}

HRESULT ClassObject::QueryInterface(REFIID riid, void **ppvObject)
{
    if (!ppvObject)
        return kPointer;
    const QUuid iid = toUuid(riid);
    if (iid != iidUnknown && iid != iidClassFactory) {
        *ppvObject = nullptr;
        return kNoInterface;
    }
    AddRef();
    *ppvObject = static_cast<IClassFactory *>(this);
    return kOk;
}

ULONG ClassObject::AddRef()
{
    return ++m_references;
}

ULONG ClassObject::Release()
{
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT ClassObject::CreateInstance(void *pUnkOuter, REFIID riid, void **ppvObject)
{
    if (!ppvObject)
        return kPointer;
    *ppvObject = nullptr;
    if (pUnkOuter)
        return kNoAggregation;
    const QUuid iid = toUuid(riid);
    if (iid != iidUnknown && iid != iidDispatch && iid != m_class.defaultInterface.guid)
        return kNoInterface;
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return kNotInitialized;
    QWidget *control = CreateControl(m_class.name);
    ++live;
    QObject::connect(control, &QObject::destroyed, [] { --live; });
    *ppvObject = control;
    return kOk;
}

// An unlock without a lock held counts for nothing, so a host's unbalanced unlock cannot keep
// the count below zero and the library loaded for good.
HRESULT ClassObject::LockServer(BOOL fLock)
{
    if (fLock) {
        ++locks;
        ++live;
    } else if (locks > 0) {
        --locks;
        --live;
    }
    return kOk;
}

int ClassObject::liveCount()
{
    return live;
}

} // namespace PanelKestrin
