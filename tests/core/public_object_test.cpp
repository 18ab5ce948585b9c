#include "core/public_object.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/globals.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::HasSubstr;

// An application that nothing is called on.
std::shared_ptr<host::Application> MakeIdleApplication() {
  return std::make_shared<testing::FaultyApplication>(nullptr, nullptr);
}

class clsSample : public BoundObject {
 public:
  explicit clsSample(Services& services) : BoundObject("clsSample", services) {}
  const host::ApplicationPtr& bound_application() const { return application(); }

  enum class Outcome { kUsable, kUnusable, kHostError } outcome = Outcome::kUsable;

 private:
  bool Bind() override {
    if (outcome == Outcome::kHostError) throw HostError(1004, "refused");
    return outcome == Outcome::kUsable;
  }
};

class Init : public ::testing::Test {
 protected:
  std::string LastReport() { return fake.user_interface.message_boxes().back().text; }

  testing::FakeServices fake{{"OK", "OK"}};
  clsGlobals globals{fake.services};
  clsSample sample{fake.services};
};

TEST_F(Init, WithoutContextReportsTheClassAndErrorOne) {
  sample.Init(nullptr);
  EXPECT_FALSE(sample.initialized());
  EXPECT_THAT(LastReport(), HasSubstr("Module: clsSample\n\n"
                                      "Class initiated with invalid clsGlobals object\n\n"));
}

TEST_F(Init, WithoutApplicationReportsErrorTwo) {
  sample.Init(&globals);
  EXPECT_FALSE(sample.initialized());
  EXPECT_THAT(LastReport(),
              HasSubstr("Module: clsSample\n\n"
                        "clsGlobals was not initialized with the Excel application object\n\n"));
}

TEST_F(Init, KeepsItsOwnReferenceToTheApplication) {
  auto application = MakeIdleApplication();
  std::weak_ptr<host::Application> alive = application;
  {
    clsGlobals short_lived(fake.services);
    short_lived.SetApp(std::move(application));
    sample.Init(&short_lived);
  }
  EXPECT_TRUE(sample.initialized());
  EXPECT_FALSE(alive.expired());
  EXPECT_EQ(sample.bound_application(), alive.lock());
  EXPECT_TRUE(fake.user_interface.message_boxes().empty());
}

TEST_F(Init, AgainReplacesTheApplicationButNeverUnbinds) {
  globals.SetApp(MakeIdleApplication());
  sample.Init(&globals);
  host::ApplicationPtr second = MakeIdleApplication();
  globals.SetApp(second);
  sample.Init(&globals);
  EXPECT_EQ(sample.bound_application(), second);
  globals.SetApp(nullptr);
  sample.Init(&globals);
  sample.Init(nullptr);
  EXPECT_TRUE(sample.initialized());
  EXPECT_EQ(sample.bound_application(), second);
}

TEST_F(Init, LeavesTheObjectUnusableWhenItsSetUpFails) {
  globals.SetApp(MakeIdleApplication());
  sample.Init(&globals);
  sample.outcome = clsSample::Outcome::kUnusable;
  sample.Init(&globals);
  EXPECT_FALSE(sample.initialized());
  sample.outcome = clsSample::Outcome::kUsable;
  sample.Init(&globals);
  sample.outcome = clsSample::Outcome::kHostError;
  EXPECT_THROW(sample.Init(&globals), HostError);
  EXPECT_FALSE(sample.initialized());
}

TEST(Globals, ReleasesApplicationAndMenusWithItself) {
  testing::FakeServices fake;
  auto application = MakeIdleApplication();
  auto menus = std::make_shared<int>();
  std::weak_ptr<host::Application> application_alive = application;
  std::weak_ptr<int> menus_alive = menus;
  {
    clsGlobals globals(fake.services);
    EXPECT_EQ(globals.App(), nullptr);
    EXPECT_EQ(globals.Menus(), nullptr);
    globals.SetApp(std::move(application));
    globals.SetMenus(std::shared_ptr<clsMenuManagement>(std::move(menus), nullptr));
    EXPECT_FALSE(application_alive.expired() || menus_alive.expired());
  }
  EXPECT_TRUE(application_alive.expired());
  EXPECT_TRUE(menus_alive.expired());
}

}  // namespace
}  // namespace vantora
