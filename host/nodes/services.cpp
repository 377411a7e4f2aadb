#include "host/nodes/services.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace host {

namespace {

std::atomic<Services*> living{nullptr};
thread_local int documentThreads = 0;

} // namespace

Services::Services() {
  if (living) {
    std::fputs("host: a second application is started while one runs\n", stderr);
    std::abort();
  }
  living = this;
}

Services::~Services() {
  living = nullptr;
}

DocumentThread::DocumentThread() {
  ++documentThreads;
}
DocumentThread::~DocumentThread() {
  --documentThreads;
}
bool DocumentThread::IsHere() {
  return documentThreads > 0;
}

Services& TheServices() {
  if (Services* services = living) return *services;
  std::fputs("host: the application's interface is used while no application runs\n", stderr);
  std::abort();
}

Services* FindServices() {
  return living;
}

} // namespace host
