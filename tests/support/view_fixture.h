// A cloud in a small view.
#pragma once

#include "support/object_fixture.h"

#include "host/viewport.h"

class ViewTest : public ObjectTest {
protected:
  /** NULL where there is no OpenGL; reason_ then says why. */
  std::unique_ptr<host::Viewport> NewView() {
    std::unique_ptr<host::Viewport> view = host::Viewport::Create(doc_, 64, 64, &reason_);
    if (!view) return view;
    host::ViewCamera camera;
    camera.position = Vector(0, 0, -100);
    view->SetCamera(camera);
    view->SetBackground(0, 0, 0);
    return view;
  }
  /** Columns of the lit pixels, from left to right, one entry a pixel. */
  static std::vector<int> Lit(host::Viewport& view) {
    std::string error;
    EXPECT_TRUE(view.Draw(&error)) << error;
    const host::gl::Image image = view.Read();
    std::vector<int> columns;
    for (int x = 0; x < image.width; ++x)
      for (int y = 0; y < image.height; ++y)
        if (image.At(x, y)[0] > 0) columns.push_back(x);
    return columns;
  }

  std::string reason_;
};

#define NEEDS_VIEW(view)                                                                                     \
  if (!view) GTEST_SKIP() << reason_

const std::vector<Vector> kThree = {Vector(-20, 0, 0), Vector(0, 10, 0), Vector(20, 0, 0)};
const std::vector<Vector> kTwo = {Vector(-10, -20, 0), Vector(10, -20, 0)};
