// Parameters of the engine, and the values that they read and take.
#pragma once

#include "com/safe_array.h"
#include "engine/data_array_blocks.h"
#include "engine/data_array_runs.h"
#include "engine/object.h"

namespace vtdn::engine {

/// One interval of a parameter.
class DataItem : public Object<DIDataArrayItem> {
  public:
    using Object::Object;
    static DataItem create() { return engine::create<DataItem>(CLSID_DIDataArrayItemClass); }

    /// Reads the value over the old content of `out`.
    void value(com::Variant& out) const { com::check(get()->get_Value(out.receive())); }
    /// The same for callers that go on after a failure: reported, its error info taken off the thread.
    [[nodiscard]] bool tryValue(com::Variant& out) const {
        if (SUCCEEDED(get()->get_Value(out.receive()))) [[likely]]
            return true;
        SetErrorInfo(0, nullptr);
        return false;
    }
    void putValue(const com::Variant& value) const { com::check(get()->put_Value(value.get())); }
    [[nodiscard]] LONG mc() const {
        LONG result = 0;
        com::check(get()->get_MC(&result));
        return result;
    }
    void putMc(LONG mc) const { com::check(get()->put_MC(mc)); }
};

/// Block access to a filled data array, where the engine offers it.
class DataRuns {
  public:
    explicit DataRuns(com::Ptr<DIDataArrayRuns> runs) noexcept : runs_(std::move(runs)) {}

    /// The longest run from the item with the given index, from 1. False when there is none: the items tell.
    [[nodiscard]] bool next(LONG index, DIDataRun& out) const {
        if (!runs_) return false;
        if (SUCCEEDED(runs_->GetRun(index, &out))) return out.count > 0;
        SetErrorInfo(0, nullptr);
        return false;
    }

  private:
    com::Ptr<DIDataArrayRuns> runs_;
};

/// Block writes into a data array, where the engine offers them.
class DataBlocks {
  public:
    explicit DataBlocks(com::Ptr<DIDataArrayBlocks> blocks) noexcept : blocks_(std::move(blocks)) {}
    explicit operator bool() const noexcept { return static_cast<bool>(blocks_); }
    void set(LONG index, const DIDataRun& run) const { com::check(blocks_->SetRun(index, &run)); }

  private:
    com::Ptr<DIDataArrayBlocks> blocks_;
};

/// A run of consecutive intervals.
class DataArray : public Object<DIDataArray> {
  public:
    using Object::Object;
    static DataArray create() { return engine::create<DataArray>(CLSID_DIDataArrayClass); }

    void define(DATE periodStart, LONG count, const com::Bstr& intervalType, LONG intervalLength) const {
        com::check(get()->Define(periodStart, count, intervalType.get(), intervalLength, 0));
    }
    /// The interval with the given index, from 1.
    [[nodiscard]] DataItem item(LONG index) const {
        com::Ptr<DIDataArrayItem> result;
        com::check(get()->Item(index, result.receive()));
        return DataItem(std::move(result));
    }
    void fill(const com::Variant& value, LONG mc) const { com::check(get()->Fill(value.get(), mc)); }
    /// Sets the interval with the given index, from 1.
    void setItem(LONG index, const com::Variant& value, LONG mc) const {
        com::check(get()->SetItem(index, value.get(), mc));
    }
    /// Block writes, or none when the engine does not offer them.
    [[nodiscard]] DataBlocks blocks() const {
        com::Ptr<DIDataArrayBlocks> result;
        if (FAILED(get()->QueryInterface(__uuidof(DIDataArrayBlocks), result.receiveVoid()))) result.reset();
        return DataBlocks(std::move(result));
    }
    /// Block access; gives no run when the engine does not offer it.
    [[nodiscard]] DataRuns runs() const {
        com::Ptr<DIDataArrayRuns> result;
        if (FAILED(get()->QueryInterface(__uuidof(DIDataArrayRuns), result.receiveVoid()))) result.reset();
        return DataRuns(std::move(result));
    }
};

class Relationship : public ObjectWithTexts<DIRelationship> {
  public:
    using ObjectWithTexts::ObjectWithTexts;

    [[nodiscard]] LONG intervalCount() const {
        LONG result = 0;
        com::check(get()->get_IntervalCount(&result));
        return result;
    }
};

class Param : public ObjectWithTexts<DIParam> {
  public:
    using ObjectWithTexts::ObjectWithTexts;

    [[nodiscard]] LONG pid() const {
        LONG result = 0;
        com::check(get()->get_PID(&result));
        return result;
    }
    [[nodiscard]] LONG ioType() const {
        LONG result = 0;
        com::check(get()->get_IOType(&result));
        return result;
    }
    [[nodiscard]] DataItem dataItem(DATE timeStamp) const {
        com::Ptr<DIDataArrayItem> result;
        com::check(get()->GetDataItem(timeStamp, 0, result.receive()));
        return DataItem(std::move(result));
    }
    void readDataArray(const DataArray& data) const { com::check(get()->ReadDataArray(data.get())); }
    com::Variant specialFunction(LONG id, com::SafeArray& moreArgs) const {
        com::Variant result;
        com::check(get()->SpecialFunction(id, moreArgs.inOut(), result.receive()));
        return result;
    }
    [[nodiscard]] com::Variant specialValue(LONG id) const {
        com::Variant result;
        com::check(get()->SpecialValue(id, result.receive()));
        return result;
    }
    /// None when the parameter has none.
    [[nodiscard]] Relationship relationship() const {
        com::Ptr<DIRelationship> result;
        com::check(get()->get_Relationship(result.receive()));
        return result ? Relationship(std::move(result)) : Relationship();
    }
};

class Params : public Object<DIParams> {
  public:
    using Object::Object;

    [[nodiscard]] bool exists(LONG pid) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(get()->Exists(pid, &result));
        return result != VARIANT_FALSE;
    }
    [[nodiscard]] Param item(LONG pid) const {
        com::Ptr<DIParam> result;
        com::check(get()->Item(pid, -1, result.receive()));
        return Param(std::move(result));
    }
    void flushCache() const { com::check(get()->FlushCache()); }
};

}  // namespace vtdn::engine
