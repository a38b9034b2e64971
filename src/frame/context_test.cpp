#include "frame/context.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "tests/core/scripted_environment.h"

namespace ard {
namespace {

// What is released comes back to the host, which may call and replace again.
TEST(HandedOver, WhatIsReplacedLivesUntilTheOutermostCallOfItsObjectEnds) {
  testing::ScriptedEnvironment environment;
  Context context(environment), other(environment);
  HandedOver<int> property(context), another(context);
  int living = 0;
  const auto put = [&](HandedOver<int>& place, const std::function<void()>& gone = nullptr) {
    ++living;
    place = std::shared_ptr<int>(&living, [&living, gone](int*) {
      --living;
      if (gone) gone();
    });
  };
  put(property);
  put(property);
  EXPECT_EQ(living, 1) << "no call is in progress";
  other.Enter();  // one of another object
  put(property);
  EXPECT_EQ(living, 1);
  context.Enter();
  put(property, [&] {
    const int before = living;
    context.Enter();
    put(property);
    put(property);
    EXPECT_EQ(living, before + 2);
    context.Leave();
    EXPECT_EQ(living, before);
  });
  put(another);
  context.Enter();
  put(property);
  put(another);
  context.Leave();
  other.Leave();
  EXPECT_EQ(living, 5) << "the outermost call has not ended";
  context.Leave();
  EXPECT_EQ(living, 2) << "one of each is left";
  property = nullptr;
  another = nullptr;
  EXPECT_EQ(living, 0);
}

}  // namespace
}  // namespace ard
