#include "client/output/rows.h"

#include <algorithm>

#include "client/output/json.h"
#include "client/text/numbers.h"
#include "client/text/utf8.h"

namespace vtdn::client {

std::string Cell::raw() const {
    struct Text {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(double number) const { return shortestText(number); }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(bool flag) const { return flag ? "true" : "false"; }
    };
    return std::visit(Text(), content_);
}

std::string Cell::shown() const {
    return shown_.empty() ? raw() : shown_;
}

std::string csvField(std::string_view text) {
    const bool outerBlank = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    if (!outerBlank && text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

namespace {

class TableWriter final : public RowWriter {
  public:
    TableWriter(std::vector<Column> columns, Sink sink)
        : columns_(std::move(columns)), sink_(std::move(sink)) {
        for (const Column& column : columns_) widths_.push_back(displayWidth(column.title));
    }
    void row(const std::vector<Cell>& cells) override {
        std::vector<std::string> texts;
        texts.reserve(cells.size());
        for (std::size_t i = 0; i < cells.size(); ++i) {
            texts.push_back(oneLine(cells[i].shown()));
            widths_[i] = std::max(widths_[i], displayWidth(texts.back()));
        }
        rows_.push_back(std::move(texts));
    }
    void finish() override {
        std::vector<std::string> head;
        std::vector<std::string> rule;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            head.push_back(columns_[i].title);
            rule.emplace_back(widths_[i], '-');
        }
        write(head);
        write(rule);
        for (const auto& texts : rows_) write(texts);
    }

  private:
    void write(const std::vector<std::string>& texts) {
        std::string line;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (i > 0) line += "  ";
            const std::size_t padding = widths_[i] - displayWidth(texts[i]);
            if (columns_[i].align == Column::Align::right) line.append(padding, ' ');
            line += texts[i];
            if (columns_[i].align == Column::Align::left) line.append(padding, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        sink_(line + "\n");
    }

    std::vector<Column> columns_;
    std::vector<std::size_t> widths_;
    std::vector<std::vector<std::string>> rows_;
    Sink sink_;
};

class CsvWriter final : public RowWriter {
  public:
    CsvWriter(const std::vector<Column>& columns, Sink sink) : sink_(std::move(sink)) {
        std::string line;
        for (std::size_t i = 0; i < columns.size(); ++i)
            line += (i > 0 ? "," : "") + csvField(columns[i].key);
        sink_(line + "\n");
    }
    void row(const std::vector<Cell>& cells) override {
        std::string line;
        for (std::size_t i = 0; i < cells.size(); ++i) line += (i > 0 ? "," : "") + csvField(cells[i].raw());
        sink_(line + "\n");
    }
    void finish() override {}

  private:
    Sink sink_;
};

class JsonRowWriter final : public RowWriter {
  public:
    JsonRowWriter(std::vector<Column> columns, Sink sink)
        : columns_(std::move(columns)), sink_(std::move(sink)) {}
    void row(const std::vector<Cell>& cells) override {
        Json object;
        object.beginObject();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            object.key(columns_[i].key);
            std::visit([&](const auto& content) { object.value(content); }, cells[i].content());
        }
        object.endObject();
        sink_((first_ ? "[\n  " : ",\n  ") + object.text());
        first_ = false;
    }
    void finish() override { sink_(first_ ? "[]\n" : "\n]\n"); }

  private:
    std::vector<Column> columns_;
    Sink sink_;
    bool first_ = true;
};

}  // namespace

std::unique_ptr<RowWriter> makeRowWriter(Format format, std::vector<Column> columns, Sink sink) {
    switch (format) {
        case Format::csv:
            return std::make_unique<CsvWriter>(columns, std::move(sink));
        case Format::json:
            return std::make_unique<JsonRowWriter>(std::move(columns), std::move(sink));
        case Format::table:
            break;
    }
    return std::make_unique<TableWriter>(std::move(columns), std::move(sink));
}

}  // namespace vtdn::client
