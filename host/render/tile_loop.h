// The pixels of a frame, tile by tile, on all render threads.
#pragma once

#include "host/render/ray_tracer.h"
#include "host/render/render_buffer.h"

namespace host {

/** Computes one pixel into the buffer. */
void ComputePixel(RayTracer& tracer, LONG x, LONG y, RenderBuffer& buffer);

/**
 * Computes every pixel. goOn(share done) is called on the calling thread several times a second; once it
 * returns false the threads stop after the pixel at hand. Each pixel depends on nothing but the scene, so
 * neither the number of threads nor the order of tiles changes a bit of it.
 */
void ComputeTiles(FrameScene& scene, const RenderOptions& options, RenderBuffer& buffer,
                  const std::function<bool(double)>& goOn);

} // namespace host
