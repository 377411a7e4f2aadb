// Parameters of the ray color shader. The application's resource parser reads this file too: one plain enum.
#ifndef KELVRA_XKELVRA_SHADER_H
#define KELVRA_XKELVRA_SHADER_H

enum {
  KELVRA_SHADER_OBJECT = 1000 // link: the point cloud whose colors are handed out
};

#endif
