// The headers that nearly every unit needs, compiled once per build.
#pragma once
#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QUrl>
#include <array>
#include <asio.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>
