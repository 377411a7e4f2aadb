#include "host/parameters/node_parameters.h"

#include "host/base/module_scope.h"
#include "host/base/text.h"
#include "host/nodes/matrix_parts.h"
#include "host/nodes/services.h"

#include <cmath>

namespace host {

namespace {

using resource::ElementType;

enum {
  kName = 900,
  kRelativePosition = 903,
  kRelativeRotation = 904,
  kRelativeScale = 905,
  kGlobalPosition = 910,
  kAbsolutePosition = 925,
  kAbsoluteRotation = 926,
  kAbsoluteScale = 927
};

/** Parameters that lie in the node itself, not in its container. */
bool GetBuiltIn(Node& node, LONG id, GeData* data) {
  if (id == kName) {
    data->SetString(node.name);
    return true;
  }
  if (node.kind != NodeKind::Object) return false;
  const Object& op = static_cast<Object&>(node);
  if (id == kRelativePosition || id == kAbsolutePosition)
    data->SetVector(op.ml.off);
  else if (id == kRelativeRotation || id == kAbsoluteRotation)
    data->SetVector(RotationOf(op.ml));
  else if (id == kRelativeScale || id == kAbsoluteScale)
    data->SetVector(ScaleOf(op.ml));
  else if (id == kGlobalPosition)
    data->SetVector(op.Global().off);
  else
    return false;
  return true;
}

bool SetBuiltIn(Node& node, LONG id, const GeData& data) {
  if (id == kName && data.GetType() == DA_STRING) {
    node.name = data.GetString();
    return true;
  }
  if (node.kind != NodeKind::Object || data.GetType() != DA_VECTOR) return false;
  Object& op = static_cast<Object&>(node);
  if (id == kRelativePosition || id == kAbsolutePosition)
    op.ml.off = data.GetVector();
  else if (id == kRelativeRotation || id == kAbsoluteRotation)
    op.ml = MatrixOf(op.ml.off, data.GetVector(), ScaleOf(op.ml));
  else if (id == kRelativeScale || id == kAbsoluteScale)
    op.ml = MatrixOf(op.ml.off, RotationOf(op.ml), data.GetVector());
  else if (id == kGlobalPosition)
    op.ml.off = op.Up() ? data.GetVector() * !op.Up()->Global() : data.GetVector();
  else
    return false;
  ++op.matrixDirty;
  return true;
}

bool IsNumber(const GeData& data) {
  return data.GetType() == DA_LONG || data.GetType() == DA_REAL || data.GetType() == DA_LLONG;
}

/** False when the value has no meaning as that type. */
bool Convert(ElementType type, const GeData& from, GeData* to) {
  switch (type) {
  case ElementType::kBool:
    if (!IsNumber(from)) return false;
    to->SetLong(from.GetReal() != 0.0);
    return true;
  case ElementType::kLong:
    if (!IsNumber(from)) return false;
    to->SetLong(from.GetLong());
    return true;
  case ElementType::kReal:
    if (!IsNumber(from)) return false;
    to->SetReal(from.GetReal());
    return true;
  case ElementType::kVector:
  case ElementType::kColor:
    *to = from;
    return from.GetType() == DA_VECTOR;
  case ElementType::kString:
    *to = from;
    return from.GetType() == DA_STRING;
  case ElementType::kFilename:
    if (from.GetType() == DA_STRING)
      to->SetFilename(Filename(from.GetString()));
    else
      *to = from;
    return to->GetType() == DA_FILENAME;
  case ElementType::kLink:
    *to = from;
    return from.GetType() == DA_ALIASLINK;
  case ElementType::kBaseTime:
    *to = from;
    return from.GetType() == DA_TIME;
  case ElementType::kMatrix:
    *to = from;
    return from.GetType() == DA_MATRIX;
  case ElementType::kSpline:
    *to = from;
    return from.GetType() == CUSTOMDATATYPE_SPLINE || from.GetType() == DA_NIL; // without a value: no curve
  case ElementType::kButton:
  case ElementType::kGroup:
  case ElementType::kSeparator:
  case ElementType::kStaticText:
    return false; // they have no value
  default:
    *to = from;
    return true;
  }
}

double ClampAxis(const resource::Parameter& parameter, int axis, double value) {
  if (parameter.min && value < (*parameter.min)[(std::size_t)axis])
    value = (*parameter.min)[(std::size_t)axis];
  if (parameter.max && value > (*parameter.max)[(std::size_t)axis])
    value = (*parameter.max)[(std::size_t)axis];
  // An exclusive bound itself is not reached.
  if (parameter.min && parameter.minExclusive && value == (*parameter.min)[(std::size_t)axis])
    value = std::nextafter(value, HUGE_VAL);
  if (parameter.max && parameter.maxExclusive && value == (*parameter.max)[(std::size_t)axis])
    value = std::nextafter(value, -HUGE_VAL);
  return value;
}

void Clamp(const resource::Parameter& parameter, GeData* data) {
  if (data->GetType() == DA_LONG) {
    data->SetLong((LONG)ClampAxis(parameter, 0, data->GetLong()));
  } else if (data->GetType() == DA_REAL) {
    data->SetReal(ClampAxis(parameter, 0, data->GetReal()));
  } else if (data->GetType() == DA_VECTOR) {
    const Vector v = data->GetVector();
    data->SetVector(
        Vector(ClampAxis(parameter, 0, v.x), ClampAxis(parameter, 1, v.y), ClampAxis(parameter, 2, v.z)));
  }
}

bool GetDefault(const resource::Parameter& parameter, GeData* data) {
  if (parameter.defaultText) {
    GeData text(FromUtf8(*parameter.defaultText));
    return Convert(parameter.type, text, data);
  }
  if (!parameter.defaultNumbers) return false;
  const resource::Numbers& n = *parameter.defaultNumbers;
  if (parameter.type == ElementType::kVector || parameter.type == ElementType::kColor) {
    data->SetVector(Vector(n[0], n[1], n[2]));
    return true;
  }
  return Convert(parameter.type, GeData(n[0]), data);
}

/** The value of the whole parameter. */
bool GetWhole(Node& node, LONG id, GeData* data) {
  if (GetBuiltIn(node, id, data)) return true;
  if (const GeData* own = node.container.GetDataPointer(id)) {
    *data = *own;
    return true;
  }
  const DescID single(id);
  const resource::Description* description = FindDescription(node, &single, DESCFLAGS_DESC_NEEDDEFAULTVALUE);
  const resource::Parameter* parameter = description ? description->FindParameter(id) : nullptr;
  return parameter && GetDefault(*parameter, data);
}

bool SetWhole(Node& node, LONG id, const GeData& data, DESCFLAGS_SET flags) {
  const DescID single(id);
  const resource::Description* description = FindDescription(node, &single);
  GeData value(data);
  if (description) {
    const resource::Parameter* parameter = description->FindParameter(id);
    if (!parameter || !Convert(parameter->type, data, &value)) return false;
    if ((flags & DESCFLAGS_SET_USERINTERACTION) && !(flags & DESCFLAGS_SET_DONTCHECKMINMAX))
      Clamp(*parameter, &value);
  }
  if (!SetBuiltIn(node, id, value) && !node.container.SetData(id, value)) return false;
  ++node.dataDirty;
  return true;
}

/** One component of a vector; 0 to 2, else -1. */
int Component(const DescID& id) {
  const LONG part = id.GetDepth() > 1 ? id[1].id : 0;
  return part >= VECTOR_X && part <= VECTOR_Z ? (int)(part - VECTOR_X) : -1;
}

} // namespace

const resource::Description* LoadDescription(LONG type, const std::string& name, Node* node) {
  PluginRegistry& plugins = TheServices().plugins;
  const Plugin* plugin = name.empty() ? plugins.Find(type, PLUGINTYPE_ANY) : node ? node->plugin : nullptr;
  const std::string& wanted = name.empty() && plugin ? plugin->description : name;
  if (!plugin || !plugin->resources || wanted.empty()) return nullptr;
  std::string error;
  const resource::Description* description = plugin->resources->folder.LoadDescription(wanted, &error);
  if (!description) TheServices().console.Print(error);
  return description;
}

const resource::Description* FindDescription(Node& node, const DescID* single, DESCFLAGS_DESC flags) {
  if (!node.plugin) return nullptr;
  DescriptionRequest request;
  request.node = &node;
  request.single = single;
  if (node.data)
    CallModule("GetDDescription", node.plugin->Node().GetDDescription, node.data, Api(&node), request.Api(),
               flags);
  if ((flags & DESCFLAGS_DESC_LOADED) && request.loaded) return request.loaded;
  return node.plugin->description.empty() ? nullptr : LoadDescription(node.type, std::string(), &node);
}

bool IsEnabled(Node& node, const DescID& id, const GeData& value) {
  if (!node.data) return true;
  return CallModule("GetDEnabling", node.plugin->Node().GetDEnabling, node.data, Api(&node), id, value,
                    DESCFLAGS_ENABLE_0, static_cast<const BaseContainer*>(nullptr)) != FALSE;
}

bool GetParameter(Node& node, const DescID& id, GeData& data, DESCFLAGS_GET flags) {
  if (node.data) {
    CallModule("GetDParameter", node.plugin->Node().GetDParameter, node.data, Api(&node), id, data, flags);
    if (flags & DESCFLAGS_GET_PARAM_GET) return true;
  }
  GeData whole;
  if (!GetWhole(node, id[0].id, &whole)) return false;
  const int component = Component(id);
  if (component >= 0) {
    if (whole.GetType() != DA_VECTOR) return false;
    data.SetReal(whole.GetVector()[component]);
  } else {
    data = whole;
  }
  return true;
}

bool SetParameter(Node& node, const DescID& id, const GeData& data, DESCFLAGS_SET flags) {
  if (node.data)
    CallModule("SetDParameter", node.plugin->Node().SetDParameter, node.data, Api(&node), id, data, flags);
  if (!(flags & DESCFLAGS_SET_PARAM_SET)) {
    GeData value(data);
    const int component = Component(id);
    if (component >= 0) {
      GeData whole;
      if (!IsNumber(data) || !GetWhole(node, id[0].id, &whole) || whole.GetType() != DA_VECTOR) return false;
      Vector v = whole.GetVector();
      v[component] = data.GetReal();
      value.SetVector(v);
    }
    if (!SetWhole(node, id[0].id, value, flags)) return false;
  }
  DescriptionPostSetValue message;
  message.descid = &id;
  SendMessage(node, MSG_DESCRIPTION_POSTSETPARAMETER, &message);
  return true;
}

} // namespace host
