#pragma once

// The class objects behind DllGetClassObject and the count of what keeps the library in use.

#include <PanelKestrin/componententry.h>
#include <PanelKestrin/typelibrary.h>

#include <QUuid>

namespace PanelKestrin {

// The identity of a GUID as a QUuid, and back.
QUuid toUuid(const GUID &guid);
GUID toGuid(const QUuid &uuid);

// Makes instances of one published class. Each class object, each server lock and each control
// it made counts as one use of the library until released, unlocked or destroyed.
class ClassObject final : public IClassFactory
{
public:
    explicit ClassObject(const TypeLibClass &cls);

    HRESULT QueryInterface(REFIID riid, void **ppvObject) override;
    ULONG AddRef() override;
    ULONG Release() override;
    HRESULT CreateInstance(void *pUnkOuter, REFIID riid, void **ppvObject) override;
    HRESULT LockServer(BOOL fLock) override;

    // Class objects, locks and controls alive.
    static int liveCount();

private:
    ~ClassObject();

    const TypeLibClass &m_class;
    ULONG m_references = 1;
};

} // namespace PanelKestrin
