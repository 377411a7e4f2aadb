// Where the messages of LASlib go. A sink belongs to the thread that sets it, so that loaders on several
// threads do not see each other's messages; without a sink a message is dropped. Nothing is ever written to
// standard error.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
typedef void (*KelvraLasMessageSink)(void* context, const char* text);

// Sets this thread's sink (null: none). The text holds what one call of the library printed, at most 1,023
// bytes, and is valid during the call only. The sink must not throw.
void kelvra_las_message(KelvraLasMessageSink sink, void* context);
#ifdef __cplusplus
}
#endif
