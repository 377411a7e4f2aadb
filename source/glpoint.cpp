#include "glpoint.h"

namespace kelvra {

namespace {

PointDescriptions descriptions;

void Describe(GlVertexBufferVectorInfo& vector, const char* name, VLONG offset, VLONG stride,
              C4DGLint location) {
  vector.strType = "vec3";
  vector.strName = name;
  vector.lDataType = C4D_GL_DATATYPE_FLOAT;
  vector.lCount = 3;
  vector.lOffset = offset;
  vector.lStride = stride;
  vector.nAttribLocation = location;
}

/** A text for which there was not enough memory is empty. */
Bool IsComplete(const VertexSet& set) {
  for (const GlVertexBufferVectorInfo& vector : set.vectors)
    if (vector.strType.GetLength() == 0 || vector.strName.GetLength() == 0) return FALSE;
  return TRUE;
}
Bool IsComplete(const InputSet& set) {
  for (const GlVertexBufferAttributeInfo& input : set.inputs)
    if (input.strDeclaration.GetLength() == 0 || input.strName.GetLength() == 0) return FALSE;
  return TRUE;
}

VertexSet* MakeVertexSet(LONG everyNth) {
  VertexSet* set = gNew VertexSet;
  if (!set) return NULL;
  Describe(set->vectors[0], "attrib_pos", 0, kVertexBytes * everyNth, C4D_VERTEX_BUFFER_VERTEX);
  Describe(set->vectors[1], "attrib2", 12, kVertexBytes * everyNth, C4D_VERTEX_BUFFER_COLOR);
  for (LONG i = 0; i < 2; ++i) set->pointers[i] = &set->vectors[i];
  return set;
}

InputSet* MakeInputSet() {
  static const char* const declarations[2] = {"vec3 iposition = attrib_pos.xyz", "vec3 icolor = attrib2.xyz"};
  static const char* const names[2] = {"iposition", "icolor"};
  InputSet* set = gNew InputSet;
  if (!set) return NULL;
  for (LONG i = 0; i < 2; ++i) {
    set->inputs[i].strDeclaration = declarations[i];
    set->inputs[i].strName = names[i];
    // The host may look at all four, and clears none.
    ClearMem(set->inputs[i].lVector, sizeof set->inputs[i].lVector);
    ClearMem(set->inputs[i].lIndex, sizeof set->inputs[i].lIndex);
    for (LONG component = 0; component < 3; ++component) {
      set->inputs[i].lVector[component] = i;
      set->inputs[i].lIndex[component] = component;
    }
    set->pointers[i] = &set->inputs[i];
  }
  return set;
}

} // namespace

Bool BuildPointDescriptions() {
  FreePointDescriptions();
  descriptions.full = MakeVertexSet(1);
  descriptions.half = MakeVertexSet(2);
  descriptions.quarter = MakeVertexSet(4);
  descriptions.inputs = MakeInputSet();
  if (!descriptions.full || !descriptions.half || !descriptions.quarter || !descriptions.inputs) return FALSE;
  return IsComplete(*descriptions.full) && IsComplete(*descriptions.half) &&
         IsComplete(*descriptions.quarter) && IsComplete(*descriptions.inputs);
}

void FreePointDescriptions() {
  gDelete(descriptions.full);
  gDelete(descriptions.half);
  gDelete(descriptions.quarter);
  gDelete(descriptions.inputs);
}

const PointDescriptions& GetPointDescriptions() {
  return descriptions;
}

} // namespace kelvra
