// The particle emitter library: objects whose particles are placed from outside, one by one. Main thread.
//
//   SetCount, Reserve, SetOption -> Prepare -> SetParticle... -> Update
//
// Objects that are no emitters are reported and left alone.
// ours: this file
#pragma once

#include "c4d_nodes.h"

enum { Oemitter_external = 1027133, ID_EMITTER_LIBRARY = 1029633 };

/** Options of an emitter, a bit set. */
enum {
  EMITTER_OPTION_WORLD = 16 ///< positions are in world space, wherever the emitter stands; else in its own
};

class EmitterLibrary : public HostOwned {
public:
  /** NULL when the library is missing; the host owns it. */
  static EmitterLibrary* Get();
  /** Exactly so many particles; those that come are white at the origin. FALSE leaves them as they were. */
  Bool SetCount(BaseObject* emitter, LONG count);
  /** Memory for at least so many, so that SetCount up to there cannot fail. FALSE when it is refused. */
  Bool Reserve(BaseObject* emitter, LONG count);
  void SetOption(BaseObject* emitter, LONG option);
  /** Begins a new state of the particles: all become white, at the origin. */
  void Prepare(BaseObject* emitter);
  /** Components of the colour are from 0 to 1. Reported outside of Prepare and Update, and beyond the count.
   */
  void SetParticle(BaseObject* emitter, LONG index, const Vector& position, const Vector& color);
  /** Ends the new state and tells everyone. Reported without Prepare. */
  void Update(BaseObject* emitter);
};
