// Scenes whose bytes a test has changed.
#pragma once

#include "host/scene/checksum.h"
#include "host/scene/scene_file.h"
#include "support/folder.h"

/** Changed bytes with the length and checksum that belong to them. */
inline std::string Sealed(std::string bytes) {
  const std::uint64_t length = bytes.size();
  std::memcpy(&bytes[length - 16], &length, 8);
  host::Checksum checksum;
  checksum.Update(bytes.data(), (std::size_t)length - 8);
  const std::uint64_t value = checksum.Value();
  std::memcpy(&bytes[length - 8], &value, 8);
  return bytes;
}

/** The line of a load that must fail, without the file's name. */
inline std::string RefusedScene(const std::string& bytes) {
  host::ByteSource source;
  std::string error;
  EXPECT_TRUE(source.OpenMemory(bytes.data(), bytes.size()));
  BaseDocument* doc = host::ReadSceneStream(source, &error);
  EXPECT_EQ(doc, nullptr);
  if (doc) BaseDocument::Free(doc);
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(error.find('\n'), std::string::npos) << error;
  return error;
}
