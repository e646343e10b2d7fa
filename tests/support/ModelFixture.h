#pragma once

#include "support/ModelStage.h"

#include <gtest/gtest.h>

namespace amberquill {

// A test with a model of its own.
class ModelFixture : public testing::Test, protected ModelStage {
protected:
    void SetUp() override { begin(); }
    void TearDown() override { end(); }
};

} // namespace amberquill
