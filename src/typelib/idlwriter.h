#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/typelibrary.h>

#include <QString>

namespace PanelKestrin {

// The type description of the library in interface definition language, written from its
// identity table: the enumerations and records, for each control a dispatch-only default
// interface and event interface with the members' dispatch numbers, accessors and by-reference
// parameters, and the creatable class. A type library compiler turns it into the binary type
// library that development tools read; it is installed with the library as PanelKestrin.idl.
PANELKESTRIN_EXPORT QString TypeLibraryIdl(const TypeLibrary &library = PublishedTypeLibrary());

} // namespace PanelKestrin
