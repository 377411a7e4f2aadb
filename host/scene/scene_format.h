// How a scene lies in a stream: one chunk per node, nested as the nodes are.
//
//   node chunk    id = kind of node, level = version of this layout
//     LONG type, LONG disk level of its plug-in, LULONG number for links (from 1, in file order)
//     STRING name, LONG bits, MATRIX (objects only), CONTAINER
//     DATA chunk  what the plug-in's Write wrote; what its Read leaves is skipped
//     OWN chunk   what the host's own nodes add
//     then the nodes below it: a document's render settings, objects and scene hooks, an object's tags and
//     objects, render settings' video posts, a scene hook's and a group's particle groups
// Chunks of other ids are skipped.
#pragma once

#include "host/scene/value_reader.h"
#include "host/scene/value_writer.h"

namespace host {

enum class NodeChunk : LONG {
  None = 0,
  Document = C4D_FOUR_BYTE('D', 'O', 'C', 'U'),
  Object = C4D_FOUR_BYTE('O', 'B', 'J', 'E'),
  Tag = C4D_FOUR_BYTE('T', 'A', 'G', ' '),
  RenderSettings = C4D_FOUR_BYTE('R', 'N', 'D', 'R'),
  VideoPost = C4D_FOUR_BYTE('V', 'P', 'S', 'T'),
  SceneHook = C4D_FOUR_BYTE('H', 'O', 'O', 'K'),
  Shader = C4D_FOUR_BYTE('S', 'H', 'D', 'R'),
  ParticleGroup = C4D_FOUR_BYTE('P', 'G', 'R', 'P')
};
constexpr LONG kDataChunk = C4D_FOUR_BYTE('D', 'A', 'T', 'A'), kOwnChunk = C4D_FOUR_BYTE('O', 'W', 'N', ' ');
constexpr LONG kNodeLayout = 1;

/** "document", "object"...; NULL for other chunks. */
const char* NodeChunkName(LONG chunk);

/** What every node chunk begins with. */
struct NodeHead {
  NodeChunk chunk = NodeChunk::Object;
  LONG type = 0, diskLevel = 0, bits = 0;
  LULONG number = 0;
  String name;
  Matrix matrix;
  BaseContainer container;

  /** The chunk must have been begun. */
  bool Write(ValueWriter& writer) const;
  bool Read(ValueReader& reader, LONG chunkId);
  /** "object Scan (type 5140)" */
  std::string Describe() const;
};

} // namespace host
