// Descriptions of the vertex records that point clouds draw from, shared by all objects.
#pragma once

#include "c4d.h"
#include "c4d_gl.h"

namespace kelvra {

/** Bytes of one vertex record: position and colour, three 32-bit floats each. */
const LONG kVertexBytes = 24;

/** Two attributes of a record, and pointers to them as the host's factory takes them. */
struct VertexSet {
  GlVertexBufferVectorInfo vectors[2];
  const GlVertexBufferVectorInfo* pointers[2];
};
/** The two names that the program's text reads, with the statements that fill them. */
struct InputSet {
  GlVertexBufferAttributeInfo inputs[2];
  const GlVertexBufferAttributeInfo* pointers[2];
};

/**
 * Every record, every second and every fourth one: the half and quarter sets are the full set with the stride
 * doubled and doubled again. Drawing uses the full set.
 */
struct PointDescriptions {
  VertexSet *full = NULL, *half = NULL, *quarter = NULL;
  InputSet* inputs = NULL;
};

/** Built at registration; FALSE when any of the four is refused memory (those made stay until the free call).
 */
Bool BuildPointDescriptions();
/** Allowed without or after a failed build. */
void FreePointDescriptions();
const PointDescriptions& GetPointDescriptions();

} // namespace kelvra
