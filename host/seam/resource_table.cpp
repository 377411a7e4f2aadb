// Entries for resources of modules.
#include "host/base/misbehaviour.h"
#include "host/base/text.h"
#include "host/nodes/services.h"
#include "host/parameters/node_parameters.h"
#include "host/seam/os_tables.h"

#include <filesystem>

namespace host {

namespace {

constexpr const char* kLanguage = "us";

struct ResourceEntries {
  static constexpr bool kMainThread = true;

  static LocalResource* Load(const Filename& path) {
    auto made = std::make_unique<Resources>();
    std::string error;
    made->path = Utf8(path);
    if (!made->folder.Open(std::filesystem::u8path(made->path), kLanguage, &error)) {
      TheServices().console.Print(error);
      return nullptr;
    }
    TheServices().resources.push_back(std::move(made));
    return TheServices().resources.back()->Api();
  }
  static void Free(LocalResource* resource) {
    Resources* impl = Resources::From(resource);
    Services& services = TheServices();
    services.plugins.Forget(impl);
    const std::size_t before = services.resources.size();
    services.resources.remove_if([&](const auto& own) { return own.get() == impl; });
    if (services.resources.size() == before) ReportCaller("resources are freed that are not loaded");
  }
  static const String* LoadString(LocalResource* resource, LONG id) {
    Resources& impl = *Resources::From(resource);
    const auto known = impl.texts.find(id);
    if (known != impl.texts.end()) return &known->second;
    const std::string* text = impl.folder.FindString(id);
    return &(impl.texts[id] = text ? FromUtf8(*text) : String());
  }
  static Bool RegisterDescription(LONG id, const String& name, LocalResource* resource) {
    std::string why;
    if (TheServices().plugins.BindDescription(id, Utf8(name), Resources::From(resource), &why)) return TRUE;
    TheServices().console.Print(why);
    return FALSE;
  }
  static Bool LoadDescription(::Description* description, LONG id, const String& name) {
    DescriptionRequest& request = *DescriptionRequest::From(description);
    if (const resource::Description* loaded = host::LoadDescription(id, Utf8(name), request.node))
      request.loaded = loaded;
    return request.loaded != nullptr;
  }
  static const DescID* GetSingleDescID(const ::Description* description) {
    return DescriptionRequest::From(const_cast<::Description*>(description))->single;
  }
};

} // namespace

HOST_BIND(Resource, ResourceEntries)

} // namespace host
