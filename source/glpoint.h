// Layout of the vertex records that clouds are drawn from, described for the host; shared by all objects.
#pragma once

#include "c4d.h"
#include "c4d_gl.h"

namespace kelvra {

/** Bytes of one vertex record: position and colour, three 32-bit floats each. */
constexpr LONG kVertexBytes = 24;

/** The two attributes of a record, and pointers to them as the host's factory expects. */
struct VertexSet {
  GlVertexBufferVectorInfo vectors[2];
  const GlVertexBufferVectorInfo* pointers[2];
};
/** The two inputs that the vertex program reads, with the statements that fill them. */
struct InputSet {
  GlVertexBufferAttributeInfo inputs[2];
  const GlVertexBufferAttributeInfo* pointers[2];
};

/**
 * Reads every record, every second or every fourth one of the same buffer: half and quarter are the full set
 * with twice and four times the stride. Drawing uses the full set.
 */
struct PointDescriptions {
  VertexSet *full = NULL, *half = NULL, *quarter = NULL;
  InputSet* inputs = NULL;
};

/** Called at registration. FALSE when memory is refused; what was made stays until it is freed. */
Bool BuildPointDescriptions();
/** May also be called after a failed build, or without one. */
void FreePointDescriptions();
const PointDescriptions& GetPointDescriptions();

} // namespace kelvra
