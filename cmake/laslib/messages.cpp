// The console and the random numbers that LASlib expects of its surroundings.
#include "laslib_messages.h"

#include "R_ext/Print.h"
#include "R_ext/Random.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

thread_local KelvraLasMessageSink messageSink = nullptr;
thread_local void* messageContext = nullptr;

void Print(const char* format, std::va_list arguments) {
  if (!messageSink) return;
  char text[1024];
  if (std::vsnprintf(text, sizeof text, format, arguments) < 0) return;
  messageSink(messageContext, text);
}

} // namespace

extern "C" {

void kelvra_las_message(KelvraLasMessageSink sink, void* context) {
  messageSink = sink;
  messageContext = context;
}

void REprintf(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Print(format, arguments);
  va_end(arguments);
}

void Rprintf(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Print(format, arguments);
  va_end(arguments);
}

double unif_rand(void) {
  return std::rand() / (RAND_MAX + 1.0);
}
}
