// Collects assertion reports while it lives.
#pragma once

#include "Assertion.h"

#include <QStringList>

#include <utility>

class CapturedReports {
public:
    CapturedReports()
        : m_previous(support::SetAssertionReporter([this](const QString& text) { m_texts << text; })) {}
    ~CapturedReports() { support::SetAssertionReporter(std::move(m_previous)); }
    CapturedReports(const CapturedReports&) = delete;
    CapturedReports& operator=(const CapturedReports&) = delete;

    const QStringList& Texts() const { return m_texts; }

private:
    QStringList m_texts;
    support::AssertionReporter m_previous;
};
