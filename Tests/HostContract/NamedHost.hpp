#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace HostContract {

/// A host to instantiate a suite with: its name in the tests' names, and how to make a fresh fixture of it.
template <typename Fixture, typename... Arguments>
struct NamedHost {
    NamedHost(std::string name_, std::function<std::shared_ptr<Fixture>(Arguments...)> make_)
        : name(std::move(name_)), make(std::move(make_)) {}
    friend void PrintTo(const NamedHost& host, std::ostream* stream) { *stream << host.name; }

    std::string name;
    std::function<std::shared_ptr<Fixture>(Arguments...)> make;
};

template <typename Host>
std::string nameOf(const testing::TestParamInfo<Host>& info) {
    return info.param.name;
}

}  // namespace HostContract
