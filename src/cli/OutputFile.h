// A file that appears whole or not at all.
#pragma once

#include <QFileDevice>
#include <QString>

#include <memory>

class OutputFile {
public:
    // Opens the file for writing; what stands at the path stays until Commit. Devices and pipes are written
    // directly.
    explicit OutputFile(const QString& path);

    bool IsOpen() const { return m_pDevice->isOpen(); }
    QFileDevice& Device() { return *m_pDevice; }
    // Puts the file in its place; false when any write failed.
    bool Commit();
    QString ErrorText() const { return m_pDevice->errorString(); }

private:
    std::unique_ptr<QFileDevice> m_pDevice;
};
