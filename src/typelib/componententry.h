#pragma once

// The four component entry points, exported from the library with C linkage and their classic
// signatures, so that a container that registers and creates components by class identity can
// do so with these controls.

#include <PanelKestrin/panelkestrin_export.h>

#ifdef _WIN32
#include <objbase.h>
#else
#include <cstdint>

#ifndef _HRESULT_DEFINED
#define _HRESULT_DEFINED
typedef int32_t HRESULT;
#endif
#ifndef GUID_DEFINED
#define GUID_DEFINED
typedef struct _GUID
{
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
} GUID;
#endif
typedef GUID IID;
typedef GUID CLSID;
typedef const IID &REFIID;
typedef const CLSID &REFCLSID;
typedef void *LPVOID;
typedef uint32_t ULONG;
typedef int BOOL;

#ifndef __IClassFactory_INTERFACE_DEFINED__
#define __IClassFactory_INTERFACE_DEFINED__
// A class object: makes instances of one class. Reference counted; the caller releases it.
struct IClassFactory
{
    virtual HRESULT QueryInterface(REFIID riid, void **ppvObject) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
    // Creates the control: *ppvObject receives a new QWidget (the control, without a parent,
    // owned by the caller). riid is the class's default interface, IDispatch or IUnknown.
    // Needs a QApplication; pUnkOuter must be null (no aggregation).
    virtual HRESULT CreateInstance(void *pUnkOuter, REFIID riid, void **ppvObject) = 0;
    // Keeps the library loaded (fLock true) until unlocked, without an instance.
    virtual HRESULT LockServer(BOOL fLock) = 0;
};
#endif
#endif

extern "C" {

// Records the six classes, their interfaces and the type library in the per-user registry
// store (HKEY_CURRENT_USER "Software\Classes": CLSID, ProgID "PanelKestrin.<class>",
// Interface, TypeLib), the library file as the in-process server. S_OK, or
// SELFREG_E_CLASS (0x80040201) when the store could not be written.
PANELKESTRIN_EXPORT HRESULT DllRegisterServer(void);
// Removes exactly what DllRegisterServer recorded; SELFREG_E_CLASS when some of it stays.
PANELKESTRIN_EXPORT HRESULT DllUnregisterServer(void);
// The class object of a published class (riid IClassFactory or IUnknown).
// CLASS_E_CLASSNOTAVAILABLE for another class identity.
PANELKESTRIN_EXPORT HRESULT DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID *ppv);
// S_OK when no class object, lock or control created through one is alive; S_FALSE otherwise.
PANELKESTRIN_EXPORT HRESULT DllCanUnloadNow(void);

} // extern "C"
