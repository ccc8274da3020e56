// A disk that fails when a test wants it to. Portable.
#include "support/FaultyStorage.h"

#include <algorithm>

namespace test {
namespace {

using bxzip::Status;
using Operation = FaultPlan::Operation;

const Status injected("a failure made by the test");

class FaultySource : public bxzip::Source {
public:
    FaultySource(std::unique_ptr<Source> inner, FaultPlan& plan) : inner(std::move(inner)), plan(plan) {}

    Status getState(bxzip::SourceState& state) override {
        if (plan.strikes(Operation::State))
            return injected;
        const Status status = inner->getState(state);
        state.changeMark += changes;
        return status;
    }
    bool excludesWriters() const override {
        return plan.operation != Operation::HiddenChange && inner->excludesWriters();
    }
    Status read(std::uint64_t offset, void* buffer, std::size_t size, std::size_t& count) override {
        if (plan.strikes(Operation::Read))
            return injected;
        Status status = inner->read(offset, buffer, size, count);
        if (plan.strikes(Operation::ShortRead))
            count = std::min(count, size - 1);
        if (plan.strikes(Operation::Change)) {
            ++changes;
            change(buffer, count);
        }
        if (plan.strikes(Operation::HiddenChange))
            change(buffer, count);
        return status;
    }

private:
    /// Another one each time, so that no two reads agree.
    void change(void* buffer, std::size_t count) const {
        if (count)
            *static_cast<unsigned char*>(buffer) ^= static_cast<unsigned char>(plan.seen % 255 + 1);
    }

    unsigned changes = 0;
    std::unique_ptr<Source> inner;
    FaultPlan& plan;
};

class FaultyOutput : public bxzip::Output {
public:
    FaultyOutput(std::unique_ptr<Output> inner, FaultPlan& plan) : inner(std::move(inner)), plan(plan) {}

    Status write(std::uint64_t offset, const void* bytes, std::size_t size) override {
        if (!plan.strikes(Operation::Write))
            return inner->write(offset, bytes, size);
        if (plan.operation == Operation::Kill && plan.seen > plan.number)
            return injected;
        const Status half = inner->write(offset, bytes, size / 2);
        return half.isOk() ? injected : half;
    }
    Status setSize(std::uint64_t size) override {
        return plan.strikes(Operation::SetSize) ? injected : inner->setSize(size);
    }
    Status flush() override { return plan.strikes(Operation::Flush) ? injected : inner->flush(); }
    Status moveTo(const std::wstring& path, bool replace) override {
        return plan.strikes(Operation::Move) ? injected : inner->moveTo(path, replace);
    }
    Status remove() override { return plan.strikes(Operation::Remove) ? injected : inner->remove(); }

private:
    std::unique_ptr<Output> inner;
    FaultPlan& plan;
};

template <class Faulty, class File> Status wrap(Status status, std::unique_ptr<File>& file, FaultPlan& plan) {
    if (status.isOk())
        file = std::make_unique<Faulty>(std::move(file), plan);
    return status;
}

} // namespace

Status FaultyStorage::openSource(const std::wstring& path, std::unique_ptr<bxzip::Source>& source) {
    return plan.strikes(Operation::Open) ? injected
                                         : wrap<FaultySource>(inner.openSource(path, source), source, plan);
}

Status FaultyStorage::create(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) {
    return plan.strikes(Operation::Open) ? injected
                                         : wrap<FaultyOutput>(inner.create(path, file), file, plan);
}

Status FaultyStorage::openExisting(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) {
    return plan.strikes(Operation::Open) ? injected
                                         : wrap<FaultyOutput>(inner.openExisting(path, file), file, plan);
}

Status FaultyStorage::link(const std::wstring& path, const std::wstring& secondPath) {
    return plan.strikes(Operation::Link) ? injected : inner.link(path, secondPath);
}

} // namespace test
