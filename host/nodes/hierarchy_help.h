// Building of generator caches.
#pragma once

#include "host/nodes/node.h"

namespace host {

class Work;

/** What a generator gets while it builds: what HierarchyHelp* points to. */
struct BuildHelp {
  Work* work;
  Document* document;
  BUILDFLAGS flags;

  HierarchyHelp* Api() { return reinterpret_cast<HierarchyHelp*>(this); }
  static BuildHelp* From(HierarchyHelp* hh) { return reinterpret_cast<BuildHelp*>(hh); }
};

/** What a cache depends on. */
constexpr DIRTYFLAGS kCacheDependence =
    (DIRTYFLAGS)((LONG)DIRTYFLAGS_DATA | (LONG)DIRTYFLAGS_CACHE | (LONG)DIRTYFLAGS_CHILDREN);

/** True for generators whose cache was never built or whose data has changed since. */
bool NeedsCache(const Object& op);

} // namespace host
