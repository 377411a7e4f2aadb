// Stands in for R's header of this name. Only the library's random thinning filters, which nothing here uses,
// ask for it.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
double unif_rand(void); // in [0, 1)
#ifdef __cplusplus
}
#endif
