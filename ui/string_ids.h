// Names for the ids of the string table (ui/strings.h): StrId::ConfigurePassword
// instead of 5. The names follow the texts; where one text has two ids, the
// second (a dialog's title, as opposed to a menu entry) ends in "Title".
// The enumeration is unscoped so that a name passes wherever an id is taken:
// str(StrId::LoginName), MessageDialog(this, StrId::AuthenticationFailed, ...).
#pragma once

#include <cstdint>

namespace Tesk::StrId {

enum : std::uint32_t {
    CustomizeSystemViewLogs = 0,         // Customize System/View Logs
    ShutDownRestart = 1,                 // Shut Down/Restart
    ProductLine = 2,                     // built from the system version
    Separator = 3,                       // (empty: the menu's separator rows)
    SystemCustomization = 4,             // System Customization
    ConfigurePassword = 5,               // Configure Password
    ConfigureLockdownMode = 6,           // Configure Lockdown Mode
    ConfigureManagementNetwork = 7,      // Configure Management Network
    RestartManagementNetwork = 8,        // Restart Management Network
    TestManagementNetwork = 9,           // Test Management Network
    NetworkRestoreOptions = 10,          // Network Restore Options
    ViewSupportInformation = 11,         // View Support Information
    ViewSystemLogs = 12,                 // View System Logs
    TroubleshootingOptions = 13,         // Troubleshooting Options
    ResetSystemConfiguration = 14,       // Reset System Configuration
    ConfigureKeyboard = 15,              // Configure Keyboard
    RestartManagementNetworkError = 16,  // Restart Management Network: Error
    EnableManagementNetworkError = 17,   // Enable Management Network: Error
    DisableManagementNetworkError = 18,  // Disable Management Network: Error
    ManagementInterfaceNotFound = 19,    // Management network interface cannot be found.
    ManagementInterfaceOperationFailed =
        20,                      // Operation on the management network interface failed.
    ConfigurePasswordHelp = 21,  // To prevent unauthorized access to this system, set the pass...
    ConfigureLockdownModeHelp =
        22,  // When enabled, lockdown mode prevents users from logging dir...
    ConfigureManagementNetworkHelp =
        23,  // To view or modify this host's management network settings i...
    RestartManagementNetworkHelp =
        24,  // Restarting the management network interface may be required...
    TestManagementNetworkHelp =
        25,  // To perform a brief network test, press <Enter>.  By default...
    NetworkRestoreOptionsHelp =
        26,                   // To view various network restore options like full network r...
    ViewSystemLogsHelp = 27,  // Press the corresponding key to view a log. Press <Q> to ret...
    TroubleshootingOptionsHelp =
        28,  // To view various troubleshooting mode options like Enable Ko...
    ResetSystemConfigurationHelp =
        29,  // Warning!  All system parameters will be reverted to their s...
    RemoveCustomExtensionsHelp =
        30,                        // Warning!  All custom extensions will be removed.  This oper...
    NetworkIdentityFromDhcp = 31,  // Network identity acquired from DHCP server
    ConfigureKeyboardHelp = 32,    // To select the layout type for the keyboard of this host, pr...
    ChangeDefaultPassword = 33,    // Change default password to prevent unauthorized access
    Unknown = 34,                  // Unknown
    Ipv4Address = 35,              // IPv4 Address
    Ipv6Addresses = 36,            // IPv6 Addresses
    AttributedAddresses = 37,      // Attributed addresses
    DefaultGateway = 38,           // Default Gateway
    SubnetMask = 39,               // Subnet Mask
    Hostname = 40,                 // Hostname
    PrimaryDnsServer = 41,         // Primary DNS Server
    AlternateDnsServer = 42,       // Alternate DNS Server
    Ipv6DnsServer = 43,            // IPv6 DNS Server
    ConfigureManagementNetworkTitle = 44,  // Configure Management Network
    NetworkAdapters = 45,                  // Network Adapters
    VlanOptional = 46,                     // VLAN (optional)
    Ipv4Configuration = 47,                // IPv4 Configuration
    Ipv6Configuration = 48,                // IPv6 Configuration
    Ipv6IsEnabled = 49,                    // IPv6 is enabled.
    Ipv6IsDisabled = 50,                   // IPv6 is disabled.
    DnsConfiguration = 51,                 // DNS Configuration
    CustomDnsSuffixes = 52,                // Custom DNS Suffixes
    NetworkAdaptersHelp = 53,     // The adapters listed here provide the default network connec...
    VlanHelp = 54,                // A VLAN is a virtual network within a physical network. Beca...
    Ipv4ConfigurationHelp = 55,   // This host can obtain an IPv4 address and other networking p...
    Ipv6ConfigurationHelp = 56,   // This host can obtain IPv6 addresses and other networking pa...
    Ipv6SupportHelp = 57,         // This host can be configured to support IPv6. A restart of t...
    Ipv6EnabledAfterReboot = 58,  // The support for IPv6 will be enabled after the next reboot.
    DnsConfigurationHelp = 59,    // If this host is configured using DHCP, DNS server addresses...
    CustomDnsSuffixesHelp = 60,   // When using short, unqualified names, DNS queries will attem...
    NetworkConfigurationError = 61,   // Network Configuration Error
    NetworkRestoreOptionsTitle = 62,  // Network Restore Options
    CreateStandardSwitch = 63,        // Create Standard Switch
    CreatePortGroup = 64,             // Create Port Group
    MigrateNicToStandardSwitch = 65,  // Migrate Zerkel NIC to Standard Switch
    RestoreNetworkSettings = 66,      // Restore Network Settings
    RestoreStandardSwitch = 67,       // Restore Standard Switch
    RestoreQds = 68,                  // Restore qDS
    CreateStandardSwitchHelp = 69,  // Create a new standard virtual switch by name and an uplink...
    CreatePortGroupHelp = 70,  // Create a new port group by name and standard virtual switch...
    MigrateNicToStandardSwitchHelp =
        71,  // Migrate a zrknic to the standard virtual switch of a chosen...
    RestoreNetworkSettingsHelp =
        72,  // Restoring the network settings will revert all network conf...
    RestoreStandardSwitchHelp =
        73,                       // All management network and associated uplinks can be moved...
    RestoreQdsHelp = 74,          // Reconfigure properties of misconfigured qDS Management netw...
    NetworkAdaptersTitle = 75,    // Network Adapters
    SelectNetworkAdapters = 76,   // Select the adapters for this host's default management netw...
    NetworkAdaptersWarning = 77,  // Network Adapters: Warning
    AdaptersAlreadyInUse = 78,    // One or more of the selected adapters are already used for o...
    RemoveAdaptersFromConnections = 79,  // Remove these adapters from their current connections?
    InvalidIpAddress = 80,               // Invalid IP address
    ReenterValidIpv4Address = 81,        // Please reenter a valid IPv4 address (x.x.x.x).
    ReenterValidIpv6Network = 82,        // Please reenter a valid IPv6 network address (x:x:x/x).
    InvalidIpOrIpv6Address = 83,         // Invalid IP or IPv6 address.
    InvalidSubnet = 84,                  // Invalid subnet
    ReenterValidSubnet = 85,             // Please reenter a valid subnet (x.x.x.x).
    InvalidScope = 86,                   // Invalid scope
    LinkLocalNotStatic = 87,             // Cannot add a link-local address as static address.
    InvalidGatewayAddress = 88,          // Invalid gateway address
    ReenterValidGateway = 89,            // Please reenter a valid gateway address (x.x.x.x).
    ReenterValidIpv6Gateway = 90,        // Please reenter a valid IPv6 gateway address (x:x:x).
    LinkLocalNotGateway = 91,      // Link-local addresses are not supported as default gateway.
    InvalidDnsServerAddress = 92,  // Invalid DNS server address
    ReenterValidDnsServer = 93,    // Please reenter a valid DNS server address (IP or IPv6).
    InvalidVlanId = 94,            // Invalid VLAN ID
    ReenterValidVlanId = 95,       // Please reenter a valid VLAN ID (1-4095).
    VlanId4095Warning = 96,        // You entered a VLAN ID of 4095. This host will receive all V...
    VlanUnsureHelp = 97,           // If you are unsure how to configure or use a VLAN, it is saf...
    VlanIdPrompt = 98,             // VLAN ID (1-4094, or 4095 to access all VLANs):
    Ipv4ConfigurationTitle = 99,   // IPv4 Configuration
    Ipv4SettingsHelp = 100,        // This host can obtain network settings automatically if your...
    DisableIpv4 = 101,             // Disable IPv4 configuration for management network
    UseDynamicIpv4 = 102,          // Use dynamic IPv4 address and network configuration
    SetStaticIpv4 = 103,           // Set static IPv4 address and network configuration:
    Ipv6ConfigurationTitle = 104,  // IPv6 Configuration
    Ipv6SettingsHelp = 105,        // This host can obtain network settings automatically if your...
    DisableIpv6RestartRequired = 106,  // Disable IPv6 (restart required)
    UseDynamicIpv6 = 107,              // Use dynamic IPv6 address and network configuration
    UseDhcpv6 = 108,                   // Use DHCPv6
    SetStaticIpv6 = 109,               // Set static IPv6 address and network configuration
    StaticAddress = 110,               // Static address
    DefaultGatewayField = 111,         // Default gateway
    Warning = 112,                     // Warning
    NoAdapter = 113,                   // No adapter
    Automatic = 114,                   // Automatic
    None = 115,                        // None
    Manual = 116,                      // Manual
    Set = 117,                         // Set
    NotSet = 118,                      // Not set
    Enabled = 119,                     // Enabled
    Disabled = 120,                    // Disabled
    Done = 121,                        // Done.
    DnsConfigurationTitle = 122,       // DNS Configuration
    DnsAutomaticOnlyWithIpHelp =
        123,                       // This host can only obtain DNS settings automatically if it...
    ObtainDnsAutomatically = 124,  // Obtain DNS server addresses and a hostname automatically
    UseFollowingDns = 125,         // Use the following DNS server addresses and hostname:
    DnsSuffixesHelp = 126,         // DNS queries will attempt to locate hosts by appending the s...
    Suffixes = 127,                // Suffixes:
    RestartManagementNetworkConfirm = 128,  // Restart Management Network: Confirm
    RestartManagementNetworkWarning =
        129,  // Restarting the management network will result in a brief ne...
    RestartManagementNetworkNow = 130,    // Restart management network now?
    RestartManagementNetworkTitle = 131,  // Restart Management Network
    ManagementNetworkRestartsWait = 132,  // Please wait while the management network restarts.
    StoppingManagementNetwork = 133,      // Stopping management network.
    StartingManagementNetwork = 134,      // Starting management network.
    IpAddressIs = 135,                    // IP address is
    RestoreStandardSwitchTitle = 136,     // Restore Standard Switch
    RestoreStandardSwitchText =
        137,                       // All management network and associated uplinks can be moved...
    MoveOntoStandardSwitch = 138,  // Move the management network onto a standard switch?
    ToManageThisHost = 139,        // To manage this host, go to:
    DhcpLookupFailed = 140,        // Warning: DHCP lookup failed. You may be unable to access th...
    AuditModeWarning = 141,        // Warning: Host is running in audit mode. Your configuration...
    AuthenticationRequired = 142,  // Authentication Required
    EnterLoginAndPassword = 143,   // Enter an authorized login name and password for
    EnterSmartCardPin = 144,       // Enter the smart card login PIN for
    AuthenticationDenied = 145,    // Authentication Denied
    ConsoleAccessDisabled = 146,   // Direct console access has been disabled by the administrato...
    LoginName = 147,               // Login Name:
    LoginId = 148,                 // Login Id:
    Password = 149,                // Password:
    Pin = 150,                     // PIN:
    AuthenticationFailed = 151,    // Authentication failed
    InvalidLoginOrPassword = 152,  // Invalid login or password.
    NoPermissionToLogin = 153,     // User does not have permission to login to TESK.
    PasswordExpired = 154,         // Password has expired. You will be prompted to set a new pas...
    ConfigurePasswordTitle = 155,  // Configure Password
    SettingPasswordHelp = 156,     // Setting the password will prevent unauthorized access to th...
    OldPassword = 157,             // Old Password:
    NewPassword = 158,             // New Password:
    ConfirmPassword = 159,         // Confirm Password:
    ConfigurePasswordError = 160,  // Configure Password: Error
    ConfigurePasswordWarning = 161,  // Configure Password: Warning
    OldPasswordIncorrect = 162,      // The old password you entered is incorrect
    PasswordsDoNotMatch = 163,       // The new password and the confirmed password do not match.
    EmptyPasswordsNotAllowed = 164,  // Empty passwords are not allowed.
    SamePasswordAreYouSure = 165,    // New password is same as old password. Are you sure?
    PasswordChangeFailed = 166,    // The password change operation failed. Please ensure that yo...
    StoringAccountsFailed = 167,   // Error while storing user account information to persistent...
    ShutDownRestartTitle = 168,    // Shut Down/Restart
    ShutDownRestartHelp = 169,     // Remote management software is recommended to safely shut do...
    ForcefullyTerminateVms = 170,  // Forcefully terminate running VMs, if any ...
    ShutDownHost = 171,            // Shut Down Host
    ShutdownInProgress = 172,      // Shutdown in progress...
    VmsRunningWarning = 173,       // Warning: VMs running on the host
    VmsRunningAreYouSure = 174,    // Host has VMs running. Are you sure you want to shutdown/res...
    RestartHost = 175,             // Restart Host
    RestartInProgress = 176,       // Restart in progress...
    ResetSystemConfigurationConfirm = 177,  // Reset System Configuration: Confirm
    ResetSystemConfigurationWarning =
        178,  // Warning! All system parameters will be reverted to their so...
    ResetSystemConfigurationNow = 179,    // Reset System Configuration now?
    ResetSystemConfigurationTitle = 180,  // Reset System Configuration
    DefaultSettingsRestoreWait = 181,     // Please wait while the default settings are restored.
    DefaultSettingsRestored =
        182,  // Default settings are restored. Press <Enter> to restart you...
    RemoveCustomExtensionsConfirm = 183,  // Remove Custom Extensions: Confirm
    RemoveCustomExtensionsWarning = 184,  // Warning! All custom extensions will be removed.
    RemoveCustomExtensionsNow = 185,      // Remove custom extensions now?
    RemoveCustomExtensions = 186,         // Remove Custom Extensions
    CustomExtensionsRemoveWait = 187,     // Please wait while the custom extensions are removed.
    CustomExtensionsRemoved =
        188,  // Custom extensions have been removed. Press <Enter> to resta...
    RestoreNetworkFactorySettings = 189,  // Restore Network Factory Settings
    RestoreNetworkFactorySettingsHelp =
        190,                       // This option will reset the host network configuration to it...
    ResetNetworkAreYouSure = 191,  // Are you sure you want to reset the host network configuration?
    RestoreDefaultBlockedSetting = 192,  // Restore to default blocked setting (unblocked)
    SelectQdsUplinks = 193,              // Select qDS uplinks
    EnterValidVlanId = 194,              // Please enter a valid VLAN ID (1-4094).
    RestoreQdsTitle = 195,               // Restore qDS
    RestoreQdsPropertiesHelp =
        196,                   // Enter the properties for new qDS host local port that will...
    RestoreQdsError = 197,     // Restore qDS: Error
    UnableToRestoreQds = 198,  // Unable to restore qDS. Check logs for details.
    UnableToRestoreThirdPartyQds =
        199,                     // Unable to restore qDS. Restore qDS operation cannot be perf...
    QdsUplinks = 200,            // qDS Uplinks
    SelectQdsUplinksHelp = 201,  // Select the qDS Uplinks (one or more) to be used by manageme...
    QdsUplinksWarning = 202,     // qDS Uplinks: Warning
    NoUplinksSelected = 203,     // No uplinks were selected.
    DoYouWantToContinue = 204,   // Do you want to continue?
    NoQdsUplinksError = 205,     // No qDS Uplinks: Error
    NoUplinksConfigured = 206,   // No uplinks are configured on the host for this qDS.
    RestoreNetworkSettingsTitle = 207,  // Restore Network Settings
    FactoryNetworkRestoreWait =
        208,                       // Please wait while the factory network settings are restored.
    PoweringOffVms = 209,          // Powering Off VMs.
    AutoConfiguringNetwork = 210,  // Auto-configuring network.
    ConfigureManagementNetworkConfirm = 211,  // Configure Management Network: Confirm
    ApplyNetworkChangesWarning =
        212,  // You have made changes to the host's management network. App...
    ApplyChangesRestartNetwork = 213,  // Apply changes and restart management network?
    ApplyChangesRebootHost = 214,      // Apply changes and reboot host?
    TestManagementNetworkTitle = 215,  // Test Management Network
    TestManagementNetworkText =
        216,                // By default, this test will attempt to ping your default gat...
    PingAddress = 217,      // Ping Address
    ResolveHostname = 218,  // Resolve Hostname
    TestingManagementNetwork = 219,    // Testing Management Network
    InterruptTestAnyTime = 220,        // You may interrupt the test at any time.
    PingingAddress = 221,              // Pinging address
    ResolvingHostname = 222,           // Resolving hostname
    Failed = 223,                      // Failed.
    Ok = 224,                          // OK.
    TroubleshootingModeOptions = 225,  // Troubleshooting Mode Options
    EnableKovixShell = 226,            // Enable Kovix Shell
    DisableKovixShell = 227,           // Disable Kovix Shell
    EnableSsh = 228,                   // Enable SSH
    DisableSsh = 229,                  // Disable SSH
    KovixShell = 230,                  // Kovix Shell
    SshSupport = 231,                  // SSH Support
    ModifyShellAndSshTimeouts = 232,   // Modify Kovix Shell and SSH timeouts
    ModifyTeskIdleTimeout = 233,       // Modify TESK idle timeout
    RestartManagementAgents = 234,     // Restart Management Agents
    ChangeKovixShellState = 235,       // Change current state of the Kovix Shell
    ChangeSshState = 236,              // Change current state of SSH
    KovixShellIsEnabled = 237,         // Kovix Shell is Enabled
    KovixShellIsDisabled = 238,        // Kovix Shell is Disabled
    SshIsEnabled = 239,                // SSH is Enabled
    SshIsDisabled = 240,               // SSH is Disabled
    RestartManagementAgentsHelp =
        241,  // The management agents are the programs that allow remote ma...
    ModifyShellAndSshTimeoutsHelp =
        242,  // Modify the number of minutes that can elapse before you mus...
    ModifyTeskIdleTimeoutHelp =
        243,  // Modify the number of idle minutes that can elapse before yo...
    RestartManagementAgentsConfirm = 244,  // Restart Management Agents: Confirm
    RestartManagementAgentsWarning =
        245,  // {color:red}Warning! Restarting the management agents will d...
    RestartManagementAgentsNow = 246,         // Restart management agents now?
    StoppingManagementAgents = 247,           // Stopping management agents.
    StartingManagementAgents = 248,           // Starting management agents.
    CollectTroubleshootingInformation = 249,  // Collect extra troubleshooting information
    CollectingLiveCore = 250,                 // Collecting host agent live core information.
    PleaseWait = 251,                         // Please, wait ...
    ConfigureLockdownModeTitle = 252,         // Configure Lockdown Mode
    LockdownModeHelp = 253,    // When enabled, lockdown mode prevents users from logging dir...
    EnableLockdownMode = 254,  // Enable lockdown mode
    KeyboardLayoutHelp = 255,  // If you are having difficulty using your keyboard, choose a...
    EnableIpv6RestartRequired = 256,  // Enable IPv6: Restart Required
    RestartToEnableIpv6 = 257,        // This host must be restarted before IPv6 will be enabled.
    DisableIpv6RestartRequiredTitle = 258,  // Disable IPv6: Restart Required
    RestartToDisableIpv6 = 259,    // This host must be restarted before IPv6 will be disabled.
    RouterAdvertised = 260,        // Router advertised
    Dhcp = 261,                    // DHCP
    Static = 262,                  // STATIC
    Autoconf = 263,                // AUTOCONF
    WaitingForDhcp = 264,          // Waiting for DHCP...
    SetShellTimeouts = 265,        // Set the timeouts for Kovix Shell access (local and remote)
    SetShellTimeoutsHelp = 266,    // Set the number of minutes that can elapse before you must l...
    AvailabilityTimeout = 267,     // Availability timeout
    IdleTimeout = 268,             // Idle timeout
    InvalidTimeoutValue = 269,     // Invalid timeout value
    TimeoutValueRange = 270,       // Timeout value must be between 0 (disabled) and 1440 minutes
    SetTeskIdleTimeout = 271,      // Set idle timeout for TESK access
    SetTeskIdleTimeoutHelp = 272,  // Set the number of idle minutes that can elapse before you m...
    TeskIdleTimeout = 273,         // TESK idle timeout
    OperationFailed = 274,         // Operation Failed
    OperationSucceeded = 275,      // Operation Succeeded
    OperationCancelled = 276,      // Operation Cancelled
    CreatePortGroupPropertiesHelp =
        277,                // Enter the properties for the new port group that will be cr...
    CheckSyslog = 278,      // Please check the syslog for more information.
    InvalidArgument = 279,  // Invalid Argument
    EnterValidPortGroupName = 280,       // Please enter a valid port group name.
    StandardSwitchDetails = 281,         // Standard Switch Details
    SwitchName = 282,                    // Switch Name:
    CreatedPortGroup = 283,              // Successfully created portgroup:
    PortGroupName = 284,                 // Portgroup Name:
    UplinkAlreadyInUse = 285,            // Uplink is already in use
    EnterValidStandardSwitchName = 286,  // Please enter a valid standard switch name.
    CreatedStandardSwitch = 287,         // Successfully created standard virtual switch:
    CreateStandardSwitchPropertiesHelp =
        288,                   // Enter the properties for new standard zSwitch that will be...
    ChooseNicToMigrate = 289,  // Please choose which Zerkel NIC should be migrated to which...
};

}  // namespace Tesk::StrId
