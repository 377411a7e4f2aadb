// A resource folder that a test writes and that goes away with it.
#include "support/common.h"

#pragma once

#include "support/folder.h"

class ResourceFiles {
public:
  ResourceFiles() {
    Write("c4d_symbols.h", "enum { IDS_A = 10000 };");
    Write("strings_us/c4d_strings.str", "STRINGTABLE { IDS_A \"first\"; }");
  }
  void Write(const std::string& name, const std::string& text) const { folder_.Write(name, text); }
  /** The three files of one description; `stem` in lower case. */
  void WriteDescription(const std::string& stem, const std::string& header, const std::string& container,
                        const std::string& strings) const {
    Write("description/" + stem + ".h", header);
    Write("description/" + stem + ".res", container);
    Write("strings_us/description/" + stem + ".str", strings);
  }
  std::filesystem::path Path() const { return std::filesystem::u8path(folder_.Name()); }

private:
  const TempFolder folder_;
};
