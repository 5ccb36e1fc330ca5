// A recording for Python: read once, then never changed, and shared by all that show a part of it.
#pragma once

#include "tracelyn/Recording.h"

#include <pybind11/pybind11.h>

#include <memory>
#include <mutex>
#include <string>

namespace Tracelyn {

class CLoadedRecording {
public:
    // Reads the file. Raises OSError, or the kind of it that fits, when there is nothing to look at.
    static std::shared_ptr<CLoadedRecording> Read(const std::string& path, int accessLevel);

    const QString& GetPath() const { return m_strPath; }
    const CRecording& GetRecording() const { return m_Recording; }
    const CGraphData& GetData() const { return m_Recording.GetData(); }
    // Of the longest signal that a group lists, hidden ones included.
    int GetSampleCount() const { return m_nSamples; }

    // Whoever asks the model for more than names and samples holds this, since the model remembers answers.
    // Taken without the interpreter's lock.
    std::mutex& GetMutex() const { return m_Mutex; }
    // The model, for a picture that changes it for a while. The caller holds the mutex and brings everything
    // back as it was.
    CGraphData& BorrowData() { return m_Recording.GetData(); }

private:
    explicit CLoadedRecording(QString path) : m_strPath(std::move(path)) {}

    QString m_strPath;
    CRecording m_Recording;
    int m_nSamples = 0;
    mutable std::mutex m_Mutex;
};

using RecordingPointer = std::shared_ptr<CLoadedRecording>;

// Adds the class and its groups and signals to the module.
void AddRecording(pybind11::module_& module);

} // namespace Tracelyn
