// Tests of the initialisation callback queue: order, run-once, late additions and failures.
#include "guilib/registrar.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace gui_objects {
namespace {

std::vector<int> ran;
InitializationCallbackRegistrar* queue = nullptr;

template <int N>
void record() {
  ran.push_back(N);
}
void queueNine() {
  ran.push_back(0);
  queue->addCallback(&record<9>);
}
void fail() {
  ran.push_back(-1);
  throw std::runtime_error("callback failed");
}

TEST(RegistrarTest, RunsQueuedCallbacksOnceInOrderAndKeepsLaterOnesForTheNextRound) {
  InitializationCallbackRegistrar registrar;
  queue = &registrar;
  ran.clear();
  for (auto callback : {&record<3>, static_cast<void (*)()>(nullptr), &record<1>, &queueNine, &record<1>}) {
    registrar.addCallback(callback);
  }
  registrar.initialize();
  EXPECT_EQ(ran, (std::vector<int>{3, 1, 0, 1}));
  registrar.addCallback(&record<2>);
  registrar.initialize();
  registrar.initialize();
  EXPECT_EQ(ran, (std::vector<int>{3, 1, 0, 1, 9, 2}));
}

TEST(RegistrarTest, FailingCallbackLeavesTheRestQueuedAheadOfNewOnes) {
  InitializationCallbackRegistrar registrar;
  queue = &registrar;
  ran.clear();
  for (auto callback : {&record<1>, &fail, &record<2>, &queueNine}) registrar.addCallback(callback);
  EXPECT_THROW(registrar.initialize(), std::runtime_error);
  EXPECT_EQ(ran, (std::vector<int>{1, -1}));
  registrar.addCallback(&record<3>);
  registrar.initialize();
  EXPECT_EQ(ran, (std::vector<int>{1, -1, 2, 0, 3}));
}

}  // namespace
}  // namespace gui_objects
