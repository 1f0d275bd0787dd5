#pragma once

#include "cli/common/StepOption.h"
#include "platform/base/Result.h"

#include <CLI/App.hpp>
#include <CLI/Option.hpp>
#include <algorithm>
#include <cstddef>
#include <list>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// Options that may stand several times on a command line, each of which is a step.
template <class Step>
class StepOptions {
public:
    /// Adds them, and has their values checked when the command line is parsed. This object and the table outlive the
    /// parser.
    void addTo(CLI::App& options, std::span<const StepOption<Step>> table)
    {
        for (const StepOption<Step>& step : table)
            add(options, step);
    }

    /// In the order in which they stood on the command line that was parsed.
    std::vector<Step> inOrder(const CLI::App& options) const
    {
        std::vector<Step> steps;
        std::map<const CLI::Option*, std::size_t> taken;
        for (const CLI::Option* option : options.parse_order()) {
            const auto texts = std::ranges::find(m_options, option, &Texts::option);
            if (texts == m_options.end())
                continue;
            const std::size_t index = taken[option]++;
            steps.push_back(*texts->step->parse(hasValue(*texts->step) ? texts->values[index] : std::string()));
        }
        return steps;
    }

private:
    /// What was told for one kind of step, and the option that took it.
    struct Texts {
        const StepOption<Step>* step = nullptr;
        CLI::Option* option = nullptr;
        std::vector<std::string> values;
    };

    static bool hasValue(const StepOption<Step>& step) { return *step.syntax != '\0'; }

    void add(CLI::App& options, const StepOption<Step>& step)
    {
        Texts& texts = m_options.emplace_back();
        texts.step = &step;
        if (!hasValue(step)) {
            texts.option = options.add_flag(step.name, step.about)->disable_flag_override();
            return;
        }
        texts.option = options.add_option(step.name, texts.values, step.about);
        texts.option->type_name(std::string(step.syntax) + " ...")
            ->check([parse = step.parse](const std::string& text) {
                const Result<Step> parsed = parse(text);
                return parsed ? std::string() : parsed.error().cause;
            })
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }

    std::list<Texts> m_options; ///< the parser keeps the addresses
};

} // namespace lamina
