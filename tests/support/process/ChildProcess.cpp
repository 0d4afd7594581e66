#include "tests/support/process/ChildProcess.h"

#include <QDeadlineTimer>
#include <QProcessEnvironment>
#include <gtest/gtest.h>

#include <csignal>

namespace orlimo {

ChildProcess::ChildProcess(const std::filesystem::path& program, const ChildSettings& settings)
    : name(program)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& [variable, value] : settings.environment) {
        const auto key = QString::fromStdString(variable);
        if (value) {
            environment.insert(key, QString::fromStdString(*value));
        } else {
            environment.remove(key);
        }
    }
    process.setProcessEnvironment(environment);
    if (settings.beforeStart) {
        process.setChildProcessModifier(settings.beforeStart);
    }
    QStringList arguments;
    for (const std::string& argument : settings.arguments) {
        arguments.append(QString::fromStdString(argument));
    }
    process.start(QString::fromStdString(program.string()), arguments);
    EXPECT_TRUE(process.waitForStarted()) << program << ": " << process.errorString().toStdString();
    pid = static_cast<pid_t>(process.processId());
}

ChildProcess::~ChildProcess()
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
    }
}

void ChildProcess::pump(std::chrono::milliseconds span)
{
    process.waitForReadyRead(static_cast<int>(span.count()));
    outputSoFar += process.readAllStandardOutput().toStdString();
    errorsSoFar += process.readAllStandardError().toStdString();
}

std::optional<std::string> ChildProcess::readLine(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    for (;;) {
        const std::size_t end = outputSoFar.find('\n', readUpTo);
        if (end != std::string::npos) {
            const std::size_t start = std::exchange(readUpTo, end + 1);
            return outputSoFar.substr(start, end - start);
        }
        const bool over = process.state() == QProcess::NotRunning && process.bytesAvailable() == 0;
        if (over || deadline.hasExpired()) {
            return std::nullopt;
        }
        pump(std::chrono::milliseconds(50));
    }
}

bool ChildProcess::awaitLine(const std::string& line, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    while (const auto next = readLine(std::chrono::milliseconds(deadline.remainingTime()))) {
        if (*next == line) {
            return true;
        }
    }
    return false;
}

void ChildProcess::write(const std::string& text)
{
    process.write(text.c_str());
    EXPECT_TRUE(process.waitForBytesWritten());
}

std::string ChildProcess::ask(const std::string& command)
{
    writeLine(command);
    const auto response = readLine();
    EXPECT_TRUE(response.has_value()) << name << " does not respond to " << command << "\n"
                                      << errors();
    return response.value_or("");
}

bool ChildProcess::isRunning()
{
    pump();
    return process.state() != QProcess::NotRunning;
}

void ChildProcess::signal(int number) const
{
    EXPECT_EQ(::kill(pid, number), 0);
}

bool ChildProcess::endsWithin(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    while (process.state() != QProcess::NotRunning && !deadline.hasExpired()) {
        pump(std::chrono::milliseconds(20));
    }
    pump();
    return process.state() == QProcess::NotRunning;
}

ChildProcess::End ChildProcess::awaitEnd(std::chrono::milliseconds limit)
{
    if (!endsWithin(limit)) {
        ADD_FAILURE() << name << " does not end; it printed\n" << outputSoFar << errorsSoFar;
        return {};
    }
    if (process.exitStatus() == QProcess::CrashExit) {
        return {std::nullopt, process.exitCode()};
    }
    return {process.exitCode(), std::nullopt};
}

ToolResult runTool(
    const std::filesystem::path& program, const ChildSettings& settings, const std::string& input)
{
    ChildProcess tool(program, settings);
    if (!input.empty()) {
        tool.write(input);
    }
    tool.closeInput();
    if (!tool.endsWithin(toolTimeout)) {
        return {std::nullopt, tool.output(), program.string() + " does not end; " + tool.errors()};
    }
    return {tool.awaitEnd().status, tool.output(), tool.errors()};
}

} // namespace orlimo
