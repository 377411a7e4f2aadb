// How the host's functions get into the tables that modules call.
//
// Each table is bound in one file: a struct with a static function for every entry that is implemented, named
// and typed as in sdk/tables/<name>.inc, and after it, in namespace host:
//
//     namespace { struct HyperFileEntries { static Bool Close(HyperFile* hf) {...} ... }; }
//     HOST_BIND(HyperFile, HyperFileEntries)
//
// This defines kHyperFileTable, constant-initialised. An entry without a function ends the program with its
// name. Each function runs behind a fence: an exception is reported as the host's misbehaviour and the caller
// gets R{}. It counts as the host's own work; one that is noexcept counts as its caller's, as memory does. A
// struct that says `static constexpr bool kMainThread = true;` or `kDocumentThread` has all its entries
// report calls from other threads; single functions call RequireMainThread or RequireDocumentThread
// themselves.
#pragma once

#include "c4d_os.h"
#include "host/base/module_scope.h"

#include <exception>
#include <type_traits>

namespace host {

/** Reports a call to an entry that nobody implements, and ends the program. */
[[noreturn]] void EntryNotImplemented(const char* entry);
void ReportEntryException(const char* entry, const char* what);
/** False, and a report, on other threads than the application's main thread. */
bool RequireMainThread(const char* entry);
/** The same, but a DocumentThread will do. */
bool RequireDocumentThread(const char* entry);

template <class E, class = void>
struct IsMainThreadTable : std::false_type {};
template <class E>
struct IsMainThreadTable<E, std::void_t<decltype(E::kMainThread)>> : std::bool_constant<E::kMainThread> {};
template <class E, class = void>
struct IsDocumentThreadTable : std::false_type {};
template <class E>
struct IsDocumentThreadTable<E, std::void_t<decltype(E::kDocumentThread)>>
    : std::bool_constant<E::kDocumentThread> {};

template <class Signature, class Name>
struct NoEntry;
template <class R, class... A, class Name>
struct NoEntry<R (*)(A...), Name> {
  static R Call(A...) noexcept { EntryNotImplemented(Name::Text()); }
};

template <class Signature, class Own, Own function, class Name, class E>
struct GuardedEntry;
template <class R, class... A, class Own, Own function, class Name, class E>
struct GuardedEntry<R (*)(A...), Own, function, Name, E> {
  static R Call(A... arguments) noexcept {
    try {
      if constexpr (IsMainThreadTable<E>::value) RequireMainThread(Name::Text());
      if constexpr (IsDocumentThreadTable<E>::value) RequireDocumentThread(Name::Text());
      if constexpr (std::is_nothrow_invocable_v<Own, A...>) {
        return function(static_cast<A>(arguments)...);
      } else {
        const HostScope scope;
        return function(static_cast<A>(arguments)...);
      }
    } catch (const std::exception& e) {
      ReportEntryException(Name::Text(), e.what());
    } catch (...) {
      ReportEntryException(Name::Text(), "unknown exception");
    }
    return R();
  }
};

#define HOST_TABLE General
#define HOST_TABLE_FILE "tables/general.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Resource
#define HOST_TABLE_FILE "tables/resource.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Bitmap
#define HOST_TABLE_FILE "tables/bitmap.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Atom
#define HOST_TABLE_FILE "tables/atom.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Object
#define HOST_TABLE_FILE "tables/object.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Document
#define HOST_TABLE_FILE "tables/document.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE HyperFile
#define HOST_TABLE_FILE "tables/hyper_file.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE File
#define HOST_TABLE_FILE "tables/file.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE View
#define HOST_TABLE_FILE "tables/view.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Gl
#define HOST_TABLE_FILE "tables/gl.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE MoGraph
#define HOST_TABLE_FILE "tables/mograph.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Volume
#define HOST_TABLE_FILE "tables/volume.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Point
#define HOST_TABLE_FILE "tables/point.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Hair
#define HOST_TABLE_FILE "tables/hair.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Particle
#define HOST_TABLE_FILE "tables/particle.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Emitter
#define HOST_TABLE_FILE "tables/emitter.inc"
#include "host/seam/bind_table.inc"

#define HOST_BIND(Name, Entries) constexpr C4D_##Name k##Name##Table = bind##Name::Make<Entries>();

} // namespace host
