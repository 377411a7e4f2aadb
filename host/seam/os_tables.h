// How the host's functions get into the tables that modules call.
//
// Each table is bound in one file: a struct with a static function for every entry that is implemented, named
// and typed as in sdk/tables/<name>.inc, and after it, in namespace host:
//
//     namespace { struct HfEntries { static Bool Close(HyperFile* hf) {...} ... }; }
//     HOST_BIND_HF(HfEntries)
//
// This defines kHfTable, constant-initialised. An entry without a function ends the program with its name.
// Each function runs behind a fence: an exception is reported as the host's misbehaviour and the caller gets
// R{}. It counts as the host's own work; one that is noexcept counts as its caller's, as memory does. A
// struct that says `static constexpr bool kMainThread = true;` has all its entries report calls from other
// threads; functions that alone are the main thread's call RequireMainThread themselves.
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

template <class E, class = void>
struct IsMainThreadTable : std::false_type {};
template <class E>
struct IsMainThreadTable<E, std::void_t<decltype(E::kMainThread)>> : std::bool_constant<E::kMainThread> {};

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

#define HOST_TABLE Ge
#define HOST_TABLE_FILE "tables/general.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Lr
#define HOST_TABLE_FILE "tables/resource.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Bm
#define HOST_TABLE_FILE "tables/bitmap.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE At
#define HOST_TABLE_FILE "tables/atom.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Bo
#define HOST_TABLE_FILE "tables/object.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Bd
#define HOST_TABLE_FILE "tables/document.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Hf
#define HOST_TABLE_FILE "tables/hyper_file.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Fl
#define HOST_TABLE_FILE "tables/file.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Br
#define HOST_TABLE_FILE "tables/view.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Gl
#define HOST_TABLE_FILE "tables/gl.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Mo
#define HOST_TABLE_FILE "tables/mograph.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Vd
#define HOST_TABLE_FILE "tables/volume.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Po
#define HOST_TABLE_FILE "tables/point.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Hr
#define HOST_TABLE_FILE "tables/hair.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Tp
#define HOST_TABLE_FILE "tables/particle.inc"
#include "host/seam/bind_table.inc"
#define HOST_TABLE Em
#define HOST_TABLE_FILE "tables/emitter.inc"
#include "host/seam/bind_table.inc"

#define HOST_BIND_GE(Entries) constexpr C4D_Ge kGeTable = bindGe::Make<Entries>();
#define HOST_BIND_LR(Entries) constexpr C4D_Lr kLrTable = bindLr::Make<Entries>();
#define HOST_BIND_BM(Entries) constexpr C4D_Bm kBmTable = bindBm::Make<Entries>();
#define HOST_BIND_AT(Entries) constexpr C4D_At kAtTable = bindAt::Make<Entries>();
#define HOST_BIND_BO(Entries) constexpr C4D_Bo kBoTable = bindBo::Make<Entries>();
#define HOST_BIND_BD(Entries) constexpr C4D_Bd kBdTable = bindBd::Make<Entries>();
#define HOST_BIND_HF(Entries) constexpr C4D_Hf kHfTable = bindHf::Make<Entries>();
#define HOST_BIND_FL(Entries) constexpr C4D_Fl kFlTable = bindFl::Make<Entries>();
#define HOST_BIND_BR(Entries) constexpr C4D_Br kBrTable = bindBr::Make<Entries>();
#define HOST_BIND_GL(Entries) constexpr C4D_Gl kGlTable = bindGl::Make<Entries>();
#define HOST_BIND_MO(Entries) constexpr C4D_Mo kMoTable = bindMo::Make<Entries>();
#define HOST_BIND_VD(Entries) constexpr C4D_Vd kVdTable = bindVd::Make<Entries>();
#define HOST_BIND_PO(Entries) constexpr C4D_Po kPoTable = bindPo::Make<Entries>();
#define HOST_BIND_HR(Entries) constexpr C4D_Hr kHrTable = bindHr::Make<Entries>();
#define HOST_BIND_TP(Entries) constexpr C4D_Tp kTpTable = bindTp::Make<Entries>();
#define HOST_BIND_EM(Entries) constexpr C4D_Em kEmTable = bindEm::Make<Entries>();

} // namespace host
