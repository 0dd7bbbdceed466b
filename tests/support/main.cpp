/* SPDX-License-Identifier: Apache-2.0 */
#include "testing.h"

/* Puts every test into its own empty directory, and fails one that leaks. */
class SandboxListener : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override { test::beginTest(); }
    void OnTestEnd(const testing::TestInfo&) override
    {
        const char* left = test::endTest();
        if (left != nullptr)
            ADD_FAILURE() << left;
    }
};

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new SandboxListener);
    return RUN_ALL_TESTS();
}
