#include "cli/session/cloud_parameters.h"

namespace cli {

namespace {

GeData Parameter(BaseObject* op, LONG id) {
  GeData value;
  op->GetParameter(DescID(id), value, DESCFLAGS_GET_0);
  return value;
}

} // namespace

double RealParameter(BaseObject* op, LONG id) {
  return Parameter(op, id).GetReal();
}

bool IsUntouched(const CloudSession& session, BaseObject* op, LONG id) {
  if (session.WasSet(id)) return false;
  BaseObject* fresh = BaseObject::Alloc(op->GetType());
  if (!fresh) throw std::bad_alloc();
  const bool same = Parameter(fresh, id) == Parameter(op, id);
  BaseObject::Free(fresh);
  return same;
}

} // namespace cli
