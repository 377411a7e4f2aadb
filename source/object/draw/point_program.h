// The vertex and fragment programs that draw points, handed to the host's factory line by line.
#pragma once

#include "c4d.h"
#include "c4d_gl.h"

namespace kelvra {

/** Uniforms in the order of their declaration. */
enum PointUniform {
  kPointSize,
  kMinHeight,
  kMaxHeight,
  kFragmentColorMode, ///< declared, never set
  kColorMode,
  kColorInvert,
  kFalloffType,
  kFalloffAction,
  kFalloffPosition,
  kFalloffRadius,
  kFalloffNormal,
  kFalloffFunction,
  kMotionTime,
  kMotionMin,
  kMotionMax,
  kMotionDelta,
  kMotionScale,
  kIndexStop,
  kIndexCount,
  kIndexNth,
  kUniformCount
};

/** Names that the factory gave the uniforms. */
struct UniformNames {
  GlString names[kUniformCount];
};

/**
 * Declares the uniforms and hands over the text, unless the factory holds a compiled program whose names are
 * known. The text contains no parameter values, so it is the same for all objects, and so are the names.
 * FALSE when it does not compile, and the error handler has printed why, or when there is not enough
 * memory for the text; the caller then destroys what was begun.
 */
Bool BuildPointProgram(GlProgramFactory* factory, UniformNames& names);

/**
 * Sets one uniform of the vertex program by the value's type: integer, real or vector; other types are
 * ignored. The cache is not consulted: every call sets the uniform.
 */
void SetUniform(GlProgramFactory* factory, const GlString& name, const GeData& value, BaseContainer* cache);

} // namespace kelvra
