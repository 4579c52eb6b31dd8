#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "tests/unit/compute_test_log.h"
#include "fakes/compute/fake_cuda_values.h"
#include "fakes/compute/fake_opencl_values.h"

// Discovery against the fake OpenCL and CUDA libraries that LD_LIBRARY_PATH puts before the system's, each
// test picking the fake's machine or failure mode by name.
class OpenClFakeDriver : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(std::getenv("LD_LIBRARY_PATH"), nullptr) << "run through ctest, which puts the fakes first";
        unsetenv(fake_cl::kScenarioVariable);
    }
    void TearDown() override {
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        unsetenv(fake_cl::kScenarioVariable);
    }
    void discover(const char* scenario = nullptr) {
        if (scenario) setenv(fake_cl::kScenarioVariable, scenario, 1);
        compute::discoverOpenCl(log.log());
    }
    TestLog log;
};

class CudaFakeDriver : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(std::getenv("LD_LIBRARY_PATH"), nullptr) << "run through ctest, which puts the fakes first";
    }
    void TearDown() override {
        compute::freeCudaDevices();
        unsetenv(fake_cuda::kScenarioVariable);
    }
    bool discover(const char* scenario) {
        if (scenario)
            setenv(fake_cuda::kScenarioVariable, scenario, 1);
        else
            unsetenv(fake_cuda::kScenarioVariable);
        return compute::discoverCuda(log.log());
    }
    TestLog log;
};
