#include "Platform/Linux/Files/ErrnoFailure.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace Quillmere;

struct ErrnoCase
{
    const char *name;
    int error;
    Failure::Kind kind;
};

class ErrnoFailureTest : public testing::TestWithParam<ErrnoCase>
{
};

TEST_P(ErrnoFailureTest, HasItsKindAndNamesThePath)
{
    const Failure failure = failureFromErrno(GetParam().error, FilePath("/somewhere"));

    EXPECT_EQ(failure.kind, GetParam().kind);
    EXPECT_EQ(failure.path, FilePath("/somewhere"));
    EXPECT_FALSE(failure.detail.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Errors, ErrnoFailureTest,
                         testing::Values(ErrnoCase{"Missing", ENOENT, Failure::Kind::NotFound},
                                         ErrnoCase{"BelowAFile", ENOTDIR, Failure::Kind::NotFound},
                                         ErrnoCase{"ForgottenByTheServer", ESTALE, Failure::Kind::NotFound},
                                         ErrnoCase{"Denied", EACCES, Failure::Kind::NoPermission},
                                         ErrnoCase{"NotPermitted", EPERM, Failure::Kind::NoPermission},
                                         ErrnoCase{"Exists", EEXIST, Failure::Kind::AlreadyExists},
                                         ErrnoCase{"NotEmpty", ENOTEMPTY, Failure::Kind::AlreadyExists},
                                         ErrnoCase{"Busy", EBUSY, Failure::Kind::Busy},
                                         ErrnoCase{"Running", ETXTBSY, Failure::Kind::Busy},
                                         ErrnoCase{"Full", ENOSPC, Failure::Kind::NoSpace},
                                         ErrnoCase{"OverQuota", EDQUOT, Failure::Kind::NoSpace},
                                         ErrnoCase{"ReadOnly", EROFS, Failure::Kind::ReadOnly},
                                         ErrnoCase{"Link", ELOOP, Failure::Kind::LinkInPath},
                                         ErrnoCase{"NoSuchCall", ENOSYS, Failure::Kind::NotSupported},
                                         ErrnoCase{"NotHere", EOPNOTSUPP, Failure::Kind::NotSupported},
                                         ErrnoCase{"OtherVolume", EXDEV, Failure::Kind::NotSupported},
                                         ErrnoCase{"Stopped", ECANCELED, Failure::Kind::Cancelled},
                                         ErrnoCase{"BadDisk", EIO, Failure::Kind::Other}),
                         [](const auto &info) { return info.param.name; });
