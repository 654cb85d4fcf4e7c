// SPDX-License-Identifier: GPL-3.0-or-later
// Scene classifier and text recogniser doubles that return what a test tells them, or an error.
#pragma once

#include "platform/vision/SceneClassifier.h"
#include "platform/vision/TextRecognizer.h"

#include <vector>

namespace lumaro::testing {

class FakeSceneClassifier final : public platform::SceneClassifier
{
public:
    explicit FakeSceneClassifier(std::vector<platform::SceneObservation> observations, QString error = {})
        : m_observations(std::move(observations)), m_error(std::move(error))
    {
    }
    platform::SceneClassification classify(const QImage&) override { return {m_error.isEmpty() ? m_observations : std::vector<platform::SceneObservation>{}, m_error}; }

private:
    std::vector<platform::SceneObservation> m_observations;
    QString m_error;
};

class FakeTextRecognizer final : public platform::TextRecognizer
{
public:
    explicit FakeTextRecognizer(QStringList lines, QString error = {})
        : m_lines(std::move(lines)), m_error(std::move(error))
    {
    }
    platform::TextRecognition recognize(const QImage&) override { return {m_error.isEmpty() ? m_lines : QStringList{}, m_error}; }

private:
    QStringList m_lines;
    QString m_error;
};

} // namespace lumaro::testing
