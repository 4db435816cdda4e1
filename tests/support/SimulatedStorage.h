#pragma once

#include <variant>

#include "platform/Bundle.h"
#include "platform/ColorSchemes.h"
#include "platform/DefaultsStore.h"
#include "platform/LoginItem.h"
#include "platform/SingleInstance.h"
#include "support/SimulatedDesktop.h"

/// What a simulated desktop keeps for this program and knows of it.
namespace brindle::test {

class SimulatedDefaults final : public DefaultsStore {
public:
    struct Data {
        std::string bytes;
        friend bool operator==(const Data&, const Data&) = default;
    };
    using Value = std::variant<Data, std::string, std::int64_t>;

    explicit SimulatedDefaults(Journal& journal) : journal_(journal) {}

    std::optional<std::string> data(std::string_view key) const override {
        const auto stored = find<Data>(key);
        return stored ? std::optional(stored->bytes) : std::nullopt;
    }
    std::optional<std::string> string(std::string_view key) const override { return find<std::string>(key); }
    std::int64_t integer(std::string_view key) const override { return find<std::int64_t>(key).value_or(0); }
    bool boolean(std::string_view key) const override { return integer(key) != 0; }
    void setData(std::string_view key, std::string_view bytes) override { set(key, Data{std::string(bytes)}); }
    void setString(std::string_view key, std::string_view text) override { set(key, std::string(text)); }
    void setInteger(std::string_view key, std::int64_t number) override { set(key, number); }
    void setBoolean(std::string_view key, bool flag) override { set(key, std::int64_t{flag}); }
    Subscription onChange(std::function<void(std::string_view)> observer) override {
        return changes_.subscribe(std::move(observer));
    }

    std::map<std::string, Value, std::less<>> values;
    bool failsWrites = false;  ///< a full disk

private:
    template <typename T>
    std::optional<T> find(std::string_view key) const {
        const auto found = values.find(key);
        const auto* stored = found == values.end() ? nullptr : std::get_if<T>(&found->second);
        return stored ? std::optional(*stored) : std::nullopt;
    }
    void set(std::string_view key, Value value) {
        journal_.add((failsWrites ? "cannot store " : "store ") + std::string(key));
        if (failsWrites)
            return;
        values.insert_or_assign(std::string(key), std::move(value));
        changes_.emit(key);
    }

    Journal& journal_;
    Signal<std::string_view> changes_;
};

class SimulatedLoginItem final : public LoginItem {
public:
    explicit SimulatedLoginItem(Journal& journal) : journal_(journal) {}
    std::optional<std::string> registerItem() override { return journal_.add("register login item"), failure; }
    std::optional<std::string> unregisterItem() override { return journal_.add("unregister login item"), failure; }

    std::optional<std::string> failure;

private:
    Journal& journal_;
};

class SimulatedBundle final : public Bundle {
public:
    std::optional<std::string> bundleIdentifier() const override { return identifier; }
    std::optional<std::string> infoString(std::string_view key) const override { return find(info, key); }
    std::optional<std::string> resourcePath() const override { return resources; }
    std::optional<std::string> executablePath() const override { return executable; }
    std::string bundlePath() const override { return "/opt/self"; }
    std::optional<std::string> imageNamed(std::string_view name) const override { return find(images, name); }
    std::optional<std::string> symbolNamed(std::string_view name) const override { return find(symbols, name); }

    std::optional<std::string> identifier = "org.example.Self";
    std::optional<std::string> resources = "/opt/self/resources";
    std::optional<std::string> executable = "/opt/self/bin/self";
    Table info = {{"CFBundleShortVersionString", "1.2.3"}};
    Table images = {{"AppIconOutline", "outline.svg"}};
    Table symbols = {{"doc.on.clipboard", "clipboard.svg"}};
};

class SimulatedSystemInformation final : public SystemInformation {
public:
    SystemVersion operatingSystemVersion() const override { return {12, 4, 0}; }
    std::string operatingSystemVersionString() const override { return "Version 12.4 (Build abc)"; }
    std::string hardwareModel() const override { return "Simulator"; }
};

class SimulatedColorSchemes final : public ColorSchemes {
public:
    ColorScheme systemColorScheme() const override { return ColorScheme::light; }
    Subscription onChange(std::function<void()> /*observer*/) override { return {}; }
};

class SimulatedSingleInstance final : public SingleInstance {
public:
    InstanceClaim claim() override { return InstanceClaim::first; }
    Subscription onSecondStart(std::function<void()> /*observer*/) override { return {}; }
};

}  // namespace brindle::test
