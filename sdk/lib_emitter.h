// The particle emitter library: objects whose particles are placed from outside, one by one. Main thread.
//
//   SetCount, Reserve, SetOption -> Prepare -> SetParticle... -> Update
//
// Objects that are not emitters are reported and left alone.
// ours: this file
#pragma once

#include "c4d_nodes.h"

enum { Oemitter_external = 1027133, ID_EMITTER_LIBRARY = 1029633 };

/** Options of an emitter, a bit set. */
enum {
  EMITTER_OPTION_WORLD = 16 ///< positions are in world space; without it, in the emitter's own
};

class EmitterLibrary : public HostOwned {
public:
  /** NULL when the library is missing; the host owns it. */
  static EmitterLibrary* Get();
  /** Sets the number of particles; new ones are white, at the origin. FALSE leaves them as they were. */
  Bool SetCount(BaseObject* emitter, LONG count);
  /** Reserves memory, so that SetCount up to this count cannot fail. FALSE when it is refused. */
  Bool Reserve(BaseObject* emitter, LONG count);
  void SetOption(BaseObject* emitter, LONG option);
  /** Begins a new state: all particles become white, at the origin. */
  void Prepare(BaseObject* emitter);
  /** Colour components run from 0 to 1. Calls outside Prepare and Update, or beyond the count, are reported.
   */
  void SetParticle(BaseObject* emitter, LONG index, const Vector& position, const Vector& color);
  /** Ends the new state and notifies everyone. Reported without Prepare. */
  void Update(BaseObject* emitter);
};
