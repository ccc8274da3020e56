// The three kinds of export that the component offers.
#pragma once

#include "SorvaneCommon/ExportUtils/ExportFactoryBase.h"

/// Offers the export into a directory.
class ExportToDirectoryFactory : public ExportUtils::ExportFactoryBase {
public:
    ExportToDirectoryFactory();
    ~ExportToDirectoryFactory() override;

    const char* getId() const override;
    bool isAvailable() const override;
    bool createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) override;
};

/// Offers the export as attachments of an e-mail.
class ExportToMailFactory : public ExportUtils::ExportFactoryBase {
public:
    ExportToMailFactory();
    ~ExportToMailFactory() override;

    const char* getId() const override;
    bool isAvailable() const override;
    bool createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) override;
};

/// Offers the export into a ZIP archive.
class ExportToZipFactory : public ExportUtils::ExportFactoryBase {
public:
    ExportToZipFactory();
    ~ExportToZipFactory() override;

    const char* getId() const override;
    bool isAvailable() const override;
    bool createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) override;
};
