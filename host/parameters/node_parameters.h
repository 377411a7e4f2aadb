// Parameters of nodes as their descriptions define them. Main thread.
#pragma once

#include "host/nodes/node.h"
#include "host/resource/description.h"

namespace host {

/** What Description* points to while a plug-in's GetDDescription runs. */
struct DescriptionRequest {
  Node* node = nullptr;
  const resource::Description* loaded = nullptr;
  const DescID* single = nullptr; ///< the only parameter that is wanted; NULL for all

  ::Description* Api() { return reinterpret_cast<::Description*>(this); }
  static DescriptionRequest* From(::Description* description) {
    return reinterpret_cast<DescriptionRequest*>(description);
  }
};

/**
 * The description of the node's type, NULL without one; the plug-in hears which parameter it is asked for.
 * Lives as long as the module's resources.
 */
const resource::Description* FindDescription(Node& node, const DescID* single = nullptr,
                                             DESCFLAGS_DESC flags = DESCFLAGS_DESC_0);
/** By the name of the resource, or for name "" by the type that it is bound to. */
const resource::Description* LoadDescription(LONG type, const std::string& name, Node* node);

/** False for a parameter that the plug-in says cannot be used now: it is shown grey. */
bool IsEnabled(Node& node, const DescID& id, const GeData& value);

/** The plug-in is asked first, then the container; what is not set has the description's default. */
bool GetParameter(Node& node, const DescID& id, GeData& data, DESCFLAGS_GET flags);
/**
 * The plug-in may take the value itself; else it is converted to the description's type (and clamped when the
 * user sets it) and goes into the container. Then the plug-in hears MSG_DESCRIPTION_POSTSETPARAMETER. False
 * for parameters that the description does not have and values that cannot be converted.
 */
bool SetParameter(Node& node, const DescID& id, const GeData& data, DESCFLAGS_SET flags);

} // namespace host
