// Noticing that a document changed.
#pragma once

#include "c4d.h"

#include <cstddef>

namespace cli {

/** A number that is another one after nodes came, went, moved or changed; the same while nothing happens. */
std::size_t DocumentStamp(BaseDocument* doc);

/** The objects of a document, parents before children. */
template <class Visit>
void VisitObjects(BaseObject* first, const Visit& visit) {
  for (BaseObject* op = first; op; op = op->GetNext()) {
    visit(op);
    VisitObjects(op->GetDown(), visit);
  }
}

} // namespace cli
