// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

namespace vexmarrow {

class EventLoop;
class FileManager;
class MousePointer;
class Pickers;
class Prompts;
class SettingsStore;

/// The services of the desktop. They outlive everything that uses them.
struct Desktop {
    Prompts& prompts;
    Pickers& pickers;
    SettingsStore& settings;
    FileManager& fileManager;
    EventLoop& eventLoop;
    MousePointer& pointer;
};

} // namespace vexmarrow
