// Properties as tests of GoogleTest.
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>

namespace rc::detail {

inline void ExpectProperty(void (*property)()) {
  const std::string failure = FirstFailure(property, EnvironmentsParameters());
  if (!failure.empty()) FAIL() << failure;
}

}  // namespace rc::detail

// Each case has a fixture of its own.
#define RC_GTEST_FIXTURE_PROP(Fixture, Name, ArgList)                         \
  class RapidCheckPropImpl_##Fixture##_##Name : public Fixture {              \
   public:                                                                    \
    static void Run() {                                                       \
      RapidCheckPropImpl_##Fixture##_##Name fixture;                          \
      fixture.SetUp();                                                        \
      fixture();                                                              \
      fixture.TearDown();                                                     \
    }                                                                         \
    void TestBody() override {}                                               \
    void operator() ArgList;                                                  \
  };                                                                          \
                                                                              \
  TEST(Fixture##_RapidCheck, Name) {                                          \
    ::rc::detail::ExpectProperty(RapidCheckPropImpl_##Fixture##_##Name::Run); \
  }                                                                           \
                                                                              \
  void RapidCheckPropImpl_##Fixture##_##Name::operator() ArgList
