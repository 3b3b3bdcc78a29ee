// The types of what an HbbTV page finds on a receiver with this bundle. They declare one name, "hbbtv", and touch nothing
// else, so that they go with other declarations of the same globals; hbbtv.d.ts has them and the globals.
//
// Generated from the interface descriptions by "npm run reference"; changes made here are lost.

declare namespace hbbtv {
  /**
   * An `object` element that behaves as its native object. It is an HTMLObjectElement, whose width and height are numbers
   * when it shows a picture: they are read as `any`, because HTML's own are texts, and written as numbers.
   */
  type OipfElement<T> = Omit<T, "width" | "height"> &
    Omit<HTMLObjectElement, Exclude<keyof T | "width" | "height", "addEventListener" | "removeEventListener">> &
    (T extends { width: number } ? OipfElementSize : Pick<HTMLObjectElement, "width" | "height">);

  /** The size of an element that shows a picture, in pixels. */
  interface OipfElementSize {
    get width(): any;
    set width(pixels: number);
    get height(): any;
    set height(pixels: number);
  }

  /**
   * The elements that a page finds by id. A page says in a declaration of its own which it has:
   *   declare namespace hbbtv { interface ElementsById { video: OipfElements["video/broadcast"]; } }
   */
  interface ElementsById {}


  /** What an `object` element is, by its type. */
  interface OipfElements {
    "application/oipfApplicationManager": OipfElement<OipfApplicationManager>;
    "application/oipfConfiguration": OipfElement<OipfConfiguration>;
    "application/oipfCapabilities": OipfElement<OipfCapabilities>;
    "application/oipfDrmAgent": OipfElement<OipfDrmAgent>;
    "application/oipfGatewayInfo": OipfElement<OipfGatewayInfo>;
    "application/oipfParentalControlManager": OipfElement<OipfParentalControlManager>;
    "application/oipfSearchManager": OipfElement<OipfSearchManager>;
    "video/broadcast": OipfElement<OipfVideoBroadcast>;
    "audio/mp3": OipfElement<OipfAVControl>;
    "audio/mp4": OipfElement<OipfAVControl>;
    "audio/mpeg": OipfElement<OipfAVControl>;
    "video/mp4": OipfElement<OipfAVControl>;
    "video/mpeg": OipfElement<OipfAVControl>;
    "video/mpeg4": OipfElement<OipfAVControl>;
    "video/x-ms-wmv": OipfElement<OipfAVControl>;
    "application/vnd.apple.mpegurl": OipfElement<OipfAVControl>;
    "application/vnd.oipf.contentaccessstreaming+xml": OipfElement<OipfAVControl>;
    "application/dash+xml": OipfElement<OipfAVControl>;
    "video/vnd.3gpp.mpd": OipfElement<OipfAVControl>;
  }

  /** Makes the objects for pages that do without `object` elements. */
  interface OipfObjectFactory {
    /** Returns whether there are objects of this MIME type. Upper and lower case are the same. */
    isObjectSupported(mimetype: string): boolean;
    /** Makes the object for "video/broadcast". */
    createVideoBroadcastObject(): OipfElement<OipfVideoBroadcast>;
    /** Makes the object for media from the network. */
    createVideoMpegObject(): OipfElement<OipfAVControl>;
    /** Makes the object for "application/oipfApplicationManager". */
    createApplicationManagerObject(): OipfApplicationManager;
    /** Makes the object for "application/oipfCapabilities". */
    createCapabilitiesObject(): OipfCapabilities;
    /** Makes a channel configuration. */
    createChannelConfig(): ChannelConfig;
    /** Makes the object for "application/oipfConfiguration". */
    createConfigurationObject(): OipfConfiguration;
    /**
     * Makes the object for "application/oipfDrmAgent". Throws "TypeError" when the receiver does not support
     * it.
     */
    createDrmAgentObject(): OipfDrmAgent;
    /** Makes the object for "application/oipfGatewayInfo". */
    createGatewayInfoObject(): OipfGatewayInfo;
    /** Makes the object for "application/oipfParentalControlManager". */
    createParentalControlManagerObject(): OipfParentalControlManager;
    /**
     * Makes the object for "application/oipfSearchManager". Throws "TypeError" when the receiver does not
     * support it.
     */
    createSearchManagerObject(): OipfSearchManager;
    /** Throws `TypeError`: there is no such object. */
    createStatusViewObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createCodManagerObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createDownloadManagerObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createDownloadTriggerObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createIMSObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createNotifSocketObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createRecordingSchedulerObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createRemoteControlFunctionObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createMDTFObject(): never;
    /** Throws `TypeError`: there is no such object. */
    createRemoteManagementObject(): never;
  }

  /** One video, audio or subtitle stream of what is being presented. */
  interface AVComponent {
    /** Component tag of the stream. */
    readonly componentTag: number;
    /** Packet identifier of the stream. */
    readonly pid: number;
    /** Kind of stream: 0 video, 1 audio, 2 subtitle; the `COMPONENT_TYPE_` constants of the video objects. */
    readonly type: number;
    /** Encoding of the stream; `undefined` for subtitles. */
    readonly encoding: string | undefined;
    /** True when the stream is encrypted. */
    readonly encrypted: boolean;
    /**
     * Width of the picture divided by its height, to two decimals (1.78 for 16:9); 0 unless the stream is
     * video.
     */
    readonly aspectRatio: number;
    /** Language of the stream; `undefined` when it is not known, and for video. */
    readonly language: string | undefined;
    /** True for an audio description; false unless the stream is audio. */
    readonly audioDescription: boolean;
    /** Number of audio channels; 0 unless the stream is audio. */
    readonly audioChannels: number;
    /** True for subtitles for the hard of hearing; false unless the stream is a subtitle stream. */
    readonly hearingImpaired: boolean;
  }

  /** A fixed, ordered list of components. */
  interface AVComponentCollection {
    /** Number of components. */
    readonly length: number;
    /**
     * Returns the component at `index`, counted from 0, a new object on every call; `undefined` past the end.
     * `collection[index]` reads the same.
     */
    item(index: number): AVComponent | undefined;
    /** The same as `item(index)`. */
    readonly [index: number]: AVComponent;
  }

  /** One running application: the page's own one, or one that it started. */
  interface Application {
    /**
     * Key set, bound channel and free memory of the application; a new object on every read. Throws
     * "SecurityError" when the application has no valid view.
     */
    readonly privateData: ApplicationPrivateData;
    /** Shows the application's view. Does nothing when the application has no valid view. */
    show(): void;
    /** Hides the application's view; the application keeps running. Does nothing without a valid view. */
    hide(): void;
    /**
     * Starts the application at `uri`, which may be relative to the current document, and returns it. `child`
     * has no effect. Returns `null` when the receiver refuses; throws "SecurityError" when this application
     * has no valid view.
     */
    createApplication(uri: string, child: boolean): Application | null;
    /** Stops the application. */
    destroyApplication(): void;
  }

  /** What an application may know and change about itself. */
  interface ApplicationPrivateData {
    /** Remote-control key groups of the application; a new object on every read. */
    readonly keyset: Keyset;
    /**
     * Channel that the application is bound to; `null` when the application is not related to a broadcast.
     */
    readonly currentChannel: Channel | null;
    /** Returns the free memory of the receiver in kilobytes, 0 when it is not known. */
    getFreeMem(): number;
  }

  /** The constants of `Channel`. It cannot be called with `new`. */
  interface ChannelConstants {
    /** `idType` of an analogue service. */
    readonly ID_ANALOG: 0;
    /** `idType` of a DVB-C service. */
    readonly ID_DVB_C: 10;
    /** `idType` of a DVB-S service. */
    readonly ID_DVB_S: 11;
    /** `idType` of a DVB-T service. */
    readonly ID_DVB_T: 12;
    /** `idType` of a service described by a delivery system descriptor (`dsd`) and a service id. */
    readonly ID_DVB_SI_DIRECT: 13;
    /** `idType` of a DVB-C2 service. */
    readonly ID_DVB_C2: 14;
    /** `idType` of a DVB-S2 service. */
    readonly ID_DVB_S2: 15;
    /** `idType` of a DVB-T2 service. */
    readonly ID_DVB_T2: 16;
    /** `idType` of an ISDB-C service. */
    readonly ID_ISDB_C: 20;
    /** `idType` of an ISDB-S service; the same number as `ID_ISDB_C`, which pages compare against. */
    readonly ID_ISDB_S: 20;
    /** `idType` of an ISDB-T service. */
    readonly ID_ISDB_T: 21;
    /** `idType` of an ATSC service. */
    readonly ID_ATSC_T: 30;
    /** `idType` of an IPTV service found through service discovery. */
    readonly ID_IPTV_SDS: 40;
    /** `idType` of an IPTV service named by a URI. */
    readonly ID_IPTV_URI: 41;
    /** `channelType` of a television service. */
    readonly TYPE_TV: 0;
    /** `channelType` of a radio service. */
    readonly TYPE_RADIO: 1;
    /** `channelType` of any other service. */
    readonly TYPE_OTHER: 2;
  }

  /**
   * One broadcast service, as it was when the object was made: nothing refreshes the values later. Numbers
   * that do not apply to the service read 4294967295, except `nid`.
   */
  interface Channel extends ChannelConstants {
    /** Kind of service: one of the `TYPE_` constants. */
    readonly channelType: number;
    /** Identifier of the channel in this receiver; "ccid://0.0" for a channel that the page made. */
    readonly ccid: string;
    /** DVB network id; `undefined` when it is not known. */
    readonly nid: number | undefined;
    /**
     * Delivery system descriptor, one character per byte (0 to 255); empty unless `idType` is
     * `ID_DVB_SI_DIRECT`. One with a byte 0 reads as it was given to `createChannelObject`, but reaches the
     * receiver only up to that byte.
     */
    readonly dsd: string;
    /** Original network id. */
    readonly onid: number;
    /** Transport stream id. */
    readonly tsid: number;
    /** Service id. */
    readonly sid: number;
    /** Name of the channel. */
    readonly name: string;
    /** Long name of the channel; may be empty. */
    readonly longName: string;
    /** Description of the channel; may be empty. */
    readonly description: string;
    /** True when the viewer may watch the channel now. */
    readonly authorised: boolean;
    /** Genres of the channel; `null` when none are known. */
    readonly genre: StringCollection | null;
    /** True when the channel is left out of the lists that the viewer sees. */
    readonly hidden: boolean;
    /** How the channel is identified: one of the `ID_` constants. */
    readonly idType: number;
    /** Major channel number. */
    readonly majorChannel: number;
    /** True when the viewer has blocked the channel by hand. */
    readonly manualBlock: boolean;
    /** Highest bit rate of the channel, as the receiver reports it. */
    readonly channelMaxBitRate: number;
    /** Identifier of an IPTV channel; empty for any other. */
    readonly ipBroadcastID: string;
    /** True when parental control locks the channel now. */
    readonly locked: boolean;
  }

  /** Holds the channel list of the receiver. */
  interface ChannelConfig {
    /**
     * All channels in the receiver's order; empty when the receiver does not answer. Every read builds a new
     * list of new channels, so keep it rather than reading it in a loop.
     */
    readonly channelList: ChannelList;
  }

  /**
   * A fixed, ordered list of channels. Every look-up returns a new `Channel`, which stays valid when the list
   * is gone.
   */
  interface ChannelList {
    /** Number of channels. */
    readonly length: number;
    /**
     * Returns the channel at `index`, counted from 0; `undefined` past the end. `list[index]` reads the same.
     */
    item(index: number): Channel | undefined;
    /**
     * Returns the first channel whose `ccid` or `ipBroadcastID` equals `channelID` exactly; `undefined` when
     * there is none.
     */
    getChannel(channelID: string): Channel | undefined;
    /**
     * Returns the first channel with this original network id, transport stream id and service id;
     * `undefined` when there is none. `nid` takes no part in the comparison.
     */
    getChannelByTriplet(onid: number, tsid: number, sid: number, nid?: number): Channel | undefined;
    /** The same as `item(index)`. */
    readonly [index: number]: Channel;
  }

  /**
   * Settings of the receiver; every read asks the receiver anew, which also decides the form of the texts.
   */
  interface Configuration {
    /**
     * Preferred audio languages, the most preferred one first; as a rule codes of three letters, such as
     * "deu,eng".
     */
    readonly preferredAudioLanguage: string;
    /** Preferred subtitle languages, in the same form. */
    readonly preferredSubtitleLanguage: string;
    /** Preferred languages of menus and applications, in the same form. */
    readonly preferredUILanguage: string;
    /** Country in which the receiver is set up; as a rule a code of three letters, such as "DEU". */
    readonly countryId: string;
  }

  /**
   * What a listener added with `addEventListener` gets. The named values of the event (such as `state` or
   * `error`) are further properties of the object. There is no propagation and no default action.
   */
  interface OipfEvent {
    /** Name of the event, without "on". */
    readonly type: string;
    /** Object that fired the event. */
    readonly target: object;
    /** Object that fired the event. */
    readonly currentTarget: object;
    /** Object that fired the event. */
    readonly srcElement: object;
    /** When the event was fired, in milliseconds since 1970. */
    readonly timeStamp: number;
    /** Always 0. */
    readonly eventPhase: number;
    /** Always false. */
    readonly bubbles: boolean;
    /** Always false. */
    readonly cancelBubble: boolean;
    /** Always false. */
    readonly cancelable: boolean;
    /** Always false. */
    readonly defaultPrevented: boolean;
    /** Has no effect: there is no default action. */
    preventDefault(): void;
    /** Has no effect: the event is complete when a listener gets it. */
    initEvent(type?: any, bubbles?: any, cancelable?: any): void;
    /** Has no effect: there is no propagation. */
    stopPropagation(): void;
    /** Has no effect: the remaining listeners are called all the same. */
    stopImmediatePropagation(): void;
  }

  /**
   * What these objects throw. Converted to a string it reads "[object Exception]", followed by the message
   * and the description, each in quotation marks.
   */
  interface Exception {
    /** Kind of error, such as "SecurityError"; the same text as `name`. */
    readonly message: string;
    /** Kind of error, such as "SecurityError". */
    readonly name: string;
    /** What went wrong, for a person to read. */
    readonly description: string;
  }

  /** The constants of `KeyEvent`. It cannot be called with `new`. */
  interface KeyEventConstants {
    /** A key that has no code of its own. */
    readonly VK_UNDEFINED: 0;
    /** Cancel. */
    readonly VK_CANCEL: 3;
    /** Backspace. */
    readonly VK_BACK_SPACE: 8;
    /** Tab. */
    readonly VK_TAB: 9;
    /** Clear. */
    readonly VK_CLEAR: 12;
    /** Enter; the OK key of a remote control. */
    readonly VK_ENTER: 13;
    /** Shift. */
    readonly VK_SHIFT: 16;
    /** Control. */
    readonly VK_CONTROL: 17;
    /** Alt. */
    readonly VK_ALT: 18;
    /** Pause, also of playback. */
    readonly VK_PAUSE: 19;
    /** Caps lock. */
    readonly VK_CAPS_LOCK: 20;
    /** Kana mode of a Japanese keyboard. */
    readonly VK_KANA: 21;
    /** Final mode of an input method. */
    readonly VK_FINAL: 24;
    /** Kanji mode of a Japanese keyboard. */
    readonly VK_KANJI: 25;
    /** Escape. */
    readonly VK_ESCAPE: 27;
    /** Convert, of an input method. */
    readonly VK_CONVERT: 28;
    /** Do not convert, of an input method. */
    readonly VK_NONCONVERT: 29;
    /** Accept, of an input method. */
    readonly VK_ACCEPT: 30;
    /** Change of the mode of an input method. */
    readonly VK_MODECHANGE: 31;
    /** Space bar. */
    readonly VK_SPACE: 32;
    /** Page up. */
    readonly VK_PAGE_UP: 33;
    /** Page down. */
    readonly VK_PAGE_DOWN: 34;
    /** End. */
    readonly VK_END: 35;
    /** Home. */
    readonly VK_HOME: 36;
    /** Left arrow. */
    readonly VK_LEFT: 37;
    /** Up arrow. */
    readonly VK_UP: 38;
    /** Right arrow. */
    readonly VK_RIGHT: 39;
    /** Down arrow. */
    readonly VK_DOWN: 40;
    /** Comma. */
    readonly VK_COMMA: 44;
    /** Period. */
    readonly VK_PERIOD: 46;
    /** Slash. */
    readonly VK_SLASH: 47;
    /** The digit 0. */
    readonly VK_0: 48;
    /** The digit 1. */
    readonly VK_1: 49;
    /** The digit 2. */
    readonly VK_2: 50;
    /** The digit 3. */
    readonly VK_3: 51;
    /** The digit 4. */
    readonly VK_4: 52;
    /** The digit 5. */
    readonly VK_5: 53;
    /** The digit 6. */
    readonly VK_6: 54;
    /** The digit 7. */
    readonly VK_7: 55;
    /** The digit 8. */
    readonly VK_8: 56;
    /** The digit 9. */
    readonly VK_9: 57;
    /** Semicolon. */
    readonly VK_SEMICOLON: 59;
    /** Equals sign. */
    readonly VK_EQUALS: 61;
    /** The letter A. */
    readonly VK_A: 65;
    /** The letter B. */
    readonly VK_B: 66;
    /** The letter C. */
    readonly VK_C: 67;
    /** The letter D. */
    readonly VK_D: 68;
    /** The letter E. */
    readonly VK_E: 69;
    /** The letter F. */
    readonly VK_F: 70;
    /** The letter G. */
    readonly VK_G: 71;
    /** The letter H. */
    readonly VK_H: 72;
    /** The letter I. */
    readonly VK_I: 73;
    /** The letter J. */
    readonly VK_J: 74;
    /** The letter K. */
    readonly VK_K: 75;
    /** The letter L. */
    readonly VK_L: 76;
    /** The letter M. */
    readonly VK_M: 77;
    /** The letter N. */
    readonly VK_N: 78;
    /** The letter O. */
    readonly VK_O: 79;
    /** The letter P. */
    readonly VK_P: 80;
    /** The letter Q. */
    readonly VK_Q: 81;
    /** The letter R. */
    readonly VK_R: 82;
    /** The letter S. */
    readonly VK_S: 83;
    /** The letter T. */
    readonly VK_T: 84;
    /** The letter U. */
    readonly VK_U: 85;
    /** The letter V. */
    readonly VK_V: 86;
    /** The letter W. */
    readonly VK_W: 87;
    /** The letter X. */
    readonly VK_X: 88;
    /** The letter Y. */
    readonly VK_Y: 89;
    /** The letter Z. */
    readonly VK_Z: 90;
    /** Opening square bracket. */
    readonly VK_OPEN_BRACKET: 91;
    /** Backslash. */
    readonly VK_BACK_SLASH: 92;
    /** Closing square bracket. */
    readonly VK_CLOSE_BRACKET: 93;
    /** The digit 0 on the keypad. */
    readonly VK_NUMPAD0: 96;
    /** The digit 1 on the keypad. */
    readonly VK_NUMPAD1: 97;
    /** The digit 2 on the keypad. */
    readonly VK_NUMPAD2: 98;
    /** The digit 3 on the keypad. */
    readonly VK_NUMPAD3: 99;
    /** The digit 4 on the keypad. */
    readonly VK_NUMPAD4: 100;
    /** The digit 5 on the keypad. */
    readonly VK_NUMPAD5: 101;
    /** The digit 6 on the keypad. */
    readonly VK_NUMPAD6: 102;
    /** The digit 7 on the keypad. */
    readonly VK_NUMPAD7: 103;
    /** The digit 8 on the keypad. */
    readonly VK_NUMPAD8: 104;
    /** The digit 9 on the keypad. */
    readonly VK_NUMPAD9: 105;
    /** Multiply on the keypad. */
    readonly VK_MULTIPLY: 106;
    /** Add on the keypad. */
    readonly VK_ADD: 107;
    /** Separator on the keypad; the name is spelled so. */
    readonly VK_SEPARATER: 108;
    /** Subtract on the keypad. */
    readonly VK_SUBTRACT: 109;
    /** Decimal point on the keypad. */
    readonly VK_DECIMAL: 110;
    /** Divide on the keypad. */
    readonly VK_DIVIDE: 111;
    /** Function key F1. */
    readonly VK_F1: 112;
    /** Function key F2. */
    readonly VK_F2: 113;
    /** Function key F3. */
    readonly VK_F3: 114;
    /** Function key F4. */
    readonly VK_F4: 115;
    /** Function key F5. */
    readonly VK_F5: 116;
    /** Function key F6. */
    readonly VK_F6: 117;
    /** Function key F7. */
    readonly VK_F7: 118;
    /** Function key F8. */
    readonly VK_F8: 119;
    /** Function key F9. */
    readonly VK_F9: 120;
    /** Function key F10. */
    readonly VK_F10: 121;
    /** Function key F11. */
    readonly VK_F11: 122;
    /** Function key F12. */
    readonly VK_F12: 123;
    /** Delete. */
    readonly VK_DELETE: 127;
    /** Num lock. */
    readonly VK_NUM_LOCK: 144;
    /** Scroll lock. */
    readonly VK_SCROLL_LOCK: 145;
    /** Print screen. */
    readonly VK_PRINTSCREEN: 154;
    /** Insert. */
    readonly VK_INSERT: 155;
    /** Help. */
    readonly VK_HELP: 156;
    /** Meta. */
    readonly VK_META: 157;
    /** Back quote. */
    readonly VK_BACK_QUOTE: 192;
    /** Quote. */
    readonly VK_QUOTE: 222;
    /** The red key. */
    readonly VK_RED: 403;
    /** The green key. */
    readonly VK_GREEN: 404;
    /** The yellow key. */
    readonly VK_YELLOW: 405;
    /** The blue key. */
    readonly VK_BLUE: 406;
    /** The grey key. */
    readonly VK_GREY: 407;
    /** The brown key. */
    readonly VK_BROWN: 408;
    /** Power. */
    readonly VK_POWER: 409;
    /** Dims the display of the receiver. */
    readonly VK_DIMMER: 410;
    /** Wink. */
    readonly VK_WINK: 411;
    /** Rewind. */
    readonly VK_REWIND: 412;
    /** Stop. */
    readonly VK_STOP: 413;
    /** Ejects or loads the medium. */
    readonly VK_EJECT_TOGGLE: 414;
    /** Play. */
    readonly VK_PLAY: 415;
    /** Record. */
    readonly VK_RECORD: 416;
    /** Fast forward. */
    readonly VK_FAST_FWD: 417;
    /** Faster playback. */
    readonly VK_PLAY_SPEED_UP: 418;
    /** Slower playback. */
    readonly VK_PLAY_SPEED_DOWN: 419;
    /** Normal playback speed. */
    readonly VK_PLAY_SPEED_RESET: 420;
    /** Next recording speed. */
    readonly VK_RECORD_SPEED_NEXT: 421;
    /** To the start. */
    readonly VK_GO_TO_START: 422;
    /** To the end. */
    readonly VK_GO_TO_END: 423;
    /** Previous. */
    readonly VK_PREV: 424;
    /** Next. */
    readonly VK_NEXT: 425;
    /** Random playback on or off. */
    readonly VK_RANDOM_TOGGLE: 426;
    /** Next channel. */
    readonly VK_CHANNEL_UP: 427;
    /** Previous channel. */
    readonly VK_CHANNEL_DOWN: 428;
    /** Stores favourite 0. */
    readonly VK_STORE_FAVORITE_0: 429;
    /** Stores favourite 1. */
    readonly VK_STORE_FAVORITE_1: 430;
    /** Stores favourite 2. */
    readonly VK_STORE_FAVORITE_2: 431;
    /** Stores favourite 3. */
    readonly VK_STORE_FAVORITE_3: 432;
    /** Recalls favourite 0. */
    readonly VK_RECALL_FAVORITE_0: 433;
    /** Recalls favourite 1. */
    readonly VK_RECALL_FAVORITE_1: 434;
    /** Recalls favourite 2. */
    readonly VK_RECALL_FAVORITE_2: 435;
    /** Recalls favourite 3. */
    readonly VK_RECALL_FAVORITE_3: 436;
    /** Clears favourite 0. */
    readonly VK_CLEAR_FAVORITE_0: 437;
    /** Clears favourite 1. */
    readonly VK_CLEAR_FAVORITE_1: 438;
    /** Clears favourite 2. */
    readonly VK_CLEAR_FAVORITE_2: 439;
    /** Clears favourite 3. */
    readonly VK_CLEAR_FAVORITE_3: 440;
    /** Channel scan on or off. */
    readonly VK_SCAN_CHANNELS_TOGGLE: 441;
    /** Picture in picture on or off. */
    readonly VK_PINP_TOGGLE: 442;
    /** Split screen on or off. */
    readonly VK_SPLIT_SCREEN_TOGGLE: 443;
    /** Swaps the two pictures. */
    readonly VK_DISPLAY_SWAP: 444;
    /** Next screen mode. */
    readonly VK_SCREEN_MODE_NEXT: 445;
    /** Next video mode. */
    readonly VK_VIDEO_MODE_NEXT: 446;
    /** Volume up. */
    readonly VK_VOLUME_UP: 447;
    /** Volume down. */
    readonly VK_VOLUME_DOWN: 448;
    /** Mute. */
    readonly VK_MUTE: 449;
    /** Next surround mode. */
    readonly VK_SURROUND_MODE_NEXT: 450;
    /** Balance to the right. */
    readonly VK_BALANCE_RIGHT: 451;
    /** Balance to the left. */
    readonly VK_BALANCE_LEFT: 452;
    /** Fader to the front. */
    readonly VK_FADER_FRONT: 453;
    /** Fader to the rear. */
    readonly VK_FADER_REAR: 454;
    /** More bass boost. */
    readonly VK_BASS_BOOST_UP: 455;
    /** Less bass boost. */
    readonly VK_BASS_BOOST_DOWN: 456;
    /** Information. */
    readonly VK_INFO: 457;
    /** Programme guide. */
    readonly VK_GUIDE: 458;
    /** Teletext. */
    readonly VK_TELETEXT: 459;
    /** Subtitles. */
    readonly VK_SUBTITLE: 460;
    /** Back. */
    readonly VK_BACK: 461;
    /** Menu. */
    readonly VK_MENU: 462;
    /** Play and pause on one key. */
    readonly VK_PLAY_PAUSE: 463;
  }

  /**
   * Key codes: what `keyCode` of a "keydown", "keypress" or "keyup" event tells. Only keys of the groups that
   * the application's `Keyset` holds reach the page.
   */
  interface KeyEvent extends KeyEventConstants {
  }

  /** The constants of `Keyset`. It cannot be called with `new`. */
  interface KeysetConstants {
    /** The red key. */
    readonly RED: 1;
    /** The green key. */
    readonly GREEN: 2;
    /** The yellow key. */
    readonly YELLOW: 4;
    /** The blue key. */
    readonly BLUE: 8;
    /** The four arrow keys, enter and back. */
    readonly NAVIGATION: 16;
    /** The playback keys: play, pause, stop, next, previous, fast forward, rewind and record. */
    readonly VCR: 32;
    /** The page-up and page-down keys. */
    readonly SCROLL: 64;
    /** The information key. */
    readonly INFO: 128;
    /** The digits 0 to 9. */
    readonly NUMERIC: 256;
    /** The letters. */
    readonly ALPHA: 512;
    /** Keys that belong to no other group. */
    readonly OTHER: 1024;
  }

  /** The groups of remote-control keys that the application receives, as a mask of the constants. */
  interface Keyset extends KeysetConstants {
    /** Mask that is in force. */
    readonly value: number;
    /** Largest mask that the application may set. */
    readonly maximumValue: number;
    /**
     * Requests `value` as the mask and returns the one that is in force afterwards, which may be smaller.
     * `keyCodes`, single keys of the group `OTHER`, is accepted and has no effect.
     */
    setValue(value: number, keyCodes?: number[]): number;
  }

  /**
   * One search: what is looked for, where, and its results. Changing any of it while the search runs, or when
   * it has finished, drops the results and is told to the search manager with `STATE_IDLE`.
   */
  interface MetadataSearch {
    /** Search target: programmes of broadcast channels. */
    readonly TARGET_BROADCAST: 1;
    /** Search target: content on demand. */
    readonly TARGET_ON_DEMAND: 2;
    /** What is searched: one of the `TARGET_` constants. */
    readonly searchTarget: number;
    /** Results of the search, the same object each time; the search begins with its `getResults`. */
    readonly result: SearchResults;
    /** Query that was set last; `null` when none was. */
    readonly query: Query | null;
    /** Sets what is looked for, in place of what was set before. The constraints stay. */
    setQuery(query: Query): void;
    /** Searches these channels only, besides those that were added before. */
    addChannelConstraint(channels: ChannelList): void;
    /**
     * Searches this channel only, besides those that were added before. `null` takes all of them away, so
     * that every channel is searched.
     */
    addChannelConstraint(channel: Channel | null): void;
    /**
     * Returns a query that compares `field` ("Programme.name", "Programme.startTime" and so on, the
     * attributes of `Programme`) by `comparison`, one of the `COMPARISON_` constants of `Query`, with a text;
     * `null` when there is no such field or comparison, or the receiver cannot keep it. A text that spells a
     * number is that number where the field is one.
     */
    createQuery(field: string, comparison: number, value: string): Query | null;
    /** Returns a query that compares `field` with a number; times and durations are in seconds. */
    createQuery(field: string, comparison: number, value: number): Query | null;
    /**
     * Prepares to find up to `count` programmes of `channel` in order of time, the first of them the one that
     * is on at `startTime` (seconds since 1970; `null` means now). Without `count` all are found. Replaces
     * everything that was set before; the search begins with `getResults`.
     */
    findProgrammesFromStream(channel: Channel, startTime: number | null, count?: number): void;
  }

  /** What listeners of `OipfAVControl` get, by the name of the event. */
  interface OipfAVControlEventMap {
    PlayStateChange: OipfEvent & { readonly state: number; readonly error: number };
    FullScreenChange: OipfEvent;
    PlaySpeedChanged: OipfEvent & { readonly speed: number };
    PlayPositionChanged: OipfEvent & { readonly position: number };
    SelectedComponentChanged: OipfEvent & { readonly componentType: number };
    SelectedComponentChange: OipfEvent & { readonly componentType: number };
    ParentalRatingChange: OipfEvent & { readonly contentID: undefined; readonly ratings: ParentalRatingCollection; readonly DRMSystemID: string; readonly blocked: boolean };
    ParentalRatingError: OipfEvent & { readonly contentID: undefined; readonly ratings: ParentalRatingCollection; readonly DRMSystemID: string };
    DRMRightsError: OipfEvent & { readonly errorState: number; readonly contentID: string; readonly DRMSystemID: string | null; readonly rightsIssuerURL: string };
  }

  /** The object for media from the network. */
  interface OipfAVControl {
    /** Component type of video. */
    readonly COMPONENT_TYPE_VIDEO: 0;
    /** Component type of audio. */
    readonly COMPONENT_TYPE_AUDIO: 1;
    /** Component type of subtitles. */
    readonly COMPONENT_TYPE_SUBTITLE: 2;
    /** Width in pixels, also as text. Writing it throws "Width" in full-screen mode. */
    width: number;
    /** Height in pixels, also as text. Writing it throws "Height" in full-screen mode. */
    height: number;
    /** True in full-screen mode. */
    readonly fullScreen: boolean;
    /** MIME type of the media. A type that the receiver does not play is not taken. */
    type: string;
    /** URL of the media; a relative one is completed from the document's base. */
    data: string;
    /** Position in milliseconds while playing or paused, else 0. */
    readonly playPosition: number;
    /** Duration in milliseconds while playing or paused, else 0. */
    readonly playTime: number;
    /** Play state: 0 stopped, 1 playing, 2 paused, 3 connecting, 4 buffering, 5 finished, 6 error. */
    readonly playState: number;
    /**
     * Last error: 0 unsupported format, 1 cannot connect, 2 unidentified, 3 insufficient resources, 4 corrupt
     * or invalid content, 5 content not available, 6 content not available at this position. 1000 is none;
     * before the first state is reported, 0 is.
     */
    readonly error: number;
    /** Speed while playing (1 is normal, negative is backwards), else 0. */
    readonly speed: number;
    /** Number of tracks. */
    readonly nrTracks: number;
    /** Index of the track that is being presented. Writing has no effect. */
    currentTrackIndex: number;
    /** Called with the new `playState` and the error, both numbers. */
    onPlayStateChange: ((this: OipfAVControl, state: number, error: number) => void) | null;
    /** Called without arguments when `fullScreen` has changed. */
    onFullScreenChange: ((this: OipfAVControl) => void) | null;
    /** Called with the new speed. */
    onPlaySpeedChanged: ((this: OipfAVControl, speed: number) => void) | null;
    /** Called with the new position in milliseconds. */
    onPlayPositionChanged: ((this: OipfAVControl, position: number) => void) | null;
    /**
     * Called with the component type when another component was selected. Listeners hear it also as
     * "SelectedComponentChange".
     */
    onSelectedComponentChanged: ((this: OipfAVControl, componentType: number) => void) | null;
    /**
     * Called with `undefined`, the ratings, the DRM system id ("urn:dvb:casystemid:" and a number) and
     * whether the content is blocked.
     */
    onParentalRatingChange: ((this: OipfAVControl, contentID: undefined, ratings: ParentalRatingCollection, DRMSystemID: string, blocked: boolean) => void) | null;
    /** Called with `undefined`, the ratings and the DRM system id when the rating cannot be evaluated. */
    onParentalRatingError: ((this: OipfAVControl, contentID: undefined, ratings: ParentalRatingCollection, DRMSystemID: string) => void) | null;
    /** Called with the error state, the content id, `null` and the URL of the rights issuer. */
    onDRMRightsError: ((this: OipfAVControl, errorState: number, contentID: string, DRMSystemID: string | null, rightsIssuerURL: string) => void) | null;
    /**
     * Plays at `speed`: 1 is normal, 0 pauses. Returns true; whether it succeeds is told by
     * `onPlayStateChange`.
     */
    play(speed: number): boolean;
    /** Stops and returns whether the receiver accepted it. */
    stop(): boolean;
    /** Moves to `pos`, in milliseconds, and returns whether the receiver accepted it. */
    seek(pos: number): boolean;
    /** Sets the volume (0 to 100) and returns whether the receiver accepted it. */
    setVolume(volume: number): boolean;
    /** Returns false: there are no play lists. */
    next(): boolean;
    /** Returns false: there are no play lists. */
    previous(): boolean;
    /** Returns an empty text. */
    getSinkProtocolInfo(): string;
    /** Returns an empty text. */
    getTransportStateVariables(names?: any, values?: any): string;
    /** Returns an empty text; sets nothing. */
    setTransportStateVariables(names?: any, values?: any): string;
    /** Enters or leaves full-screen mode. */
    setFullScreen(fullscreen: boolean): void;
    /**
     * Returns the components of one type, or of all types (video, audio, subtitles in this order) without an
     * argument. Returns `null` for a number that is no component type.
     */
    getComponents(componentType?: number | null): AVComponentCollection | null;
    /** Returns like `getComponents`, `null` included, but only the components that are being presented. */
    getCurrentActiveComponents(componentType?: number | null): AVComponentCollection | null;
    /** Presents this component. */
    selectComponent(component: AVComponent): void;
    /** Presents the receiver's choice of this component type. */
    selectComponent(componentType: number): void;
    /** Stops presenting this component. */
    unselectComponent(component: AVComponent): void;
    /** Stops presenting every component of this type. */
    unselectComponent(componentType: number): void;
    /**
     * Plays `url` when the current media has ended, or at once when nothing plays; `null` empties the queue.
     * Returns true.
     */
    queue(url: string | null): boolean;
    /**
     * Sets `type` without telling the receiver; called for the element that shows the object. A type that the
     * receiver does not play is not taken.
     */
    setMimeType(type: string): void;
    /** Keeps the attributes of the element that shows the object for the next playback. */
    setAttributes(attributes: { [name: string]: string }): void;
    /** Places the video, in pixels of the page; called for the element that shows the object. */
    setWindow(x: number, y: number, width: number, height: number): void;
    /** Stops and gives the player back. Returns true. */
    release(): boolean;
    /**
     * Calls `listener` with an `Event` whenever the event named `type` (without "on") is fired. A function is
     * stored once per event name; anything but a function is ignored. The order among listeners is not
     * defined.
     */
    addEventListener<K extends keyof OipfAVControlEventMap>(type: K,
      listener: (this: OipfAVControl, event: OipfAVControlEventMap[K]) => void, useCapture?: boolean): void;
    /**
     * Stops calling `listener`. The function is removed from every event of this object, whatever `type`
     * says. Removing a function that was never added does nothing.
     */
    removeEventListener<K extends keyof OipfAVControlEventMap>(type: K,
      listener: (this: OipfAVControl, event: OipfAVControlEventMap[K]) => void, useCapture?: boolean): void;
  }

  /** What listeners of `OipfApplicationManager` get, by the name of the event. */
  interface OipfApplicationManagerEventMap {
    LowMemory: OipfEvent;
    ApplicationLoadError: OipfEvent & { readonly app: Application };
  }

  /**
   * The object for "application/oipfApplicationManager": leads to the application that the page belongs to,
   * and tells what happens to applications.
   */
  interface OipfApplicationManager {
    /** Called without arguments when the receiver runs low on memory. */
    onLowMemory: ((this: OipfApplicationManager) => void) | null;
    /**
     * Called with `app`, an `Application`, when an application could not be loaded. `app` does not name the
     * failed application and has no valid view.
     */
    onApplicationLoadError: ((this: OipfApplicationManager, app: Application) => void) | null;
    /**
     * Returns the application of this page, a new object on every call; `null` when the page has no view of
     * its own. `document` may be any value or left out.
     */
    getOwnerApplication(document?: any): Application | null;
    /**
     * Calls `listener` with an `Event` whenever the event named `type` (without "on") is fired. A function is
     * stored once per event name; anything but a function is ignored. The order among listeners is not
     * defined.
     */
    addEventListener<K extends keyof OipfApplicationManagerEventMap>(type: K,
      listener: (this: OipfApplicationManager, event: OipfApplicationManagerEventMap[K]) => void, useCapture?: boolean): void;
    /**
     * Stops calling `listener`. The function is removed from every event of this object, whatever `type`
     * says. Removing a function that was never added does nothing.
     */
    removeEventListener<K extends keyof OipfApplicationManagerEventMap>(type: K,
      listener: (this: OipfApplicationManager, event: OipfApplicationManagerEventMap[K]) => void, useCapture?: boolean): void;
  }

  /** The object for "application/oipfCapabilities". */
  interface OipfCapabilities {
    /**
     * Description of the receiver's capabilities as an XML `Document`; parsed anew on every read. Throws,
     * most often "SyntaxError", when the receiver sends a text that cannot be parsed.
     */
    readonly xmlCapabilities: Document;
    /** Always 0: further standard-definition decoders are not reported. */
    readonly extraSDVideoDecodes: number;
    /** Always 0: further high-definition decoders are not reported. */
    readonly extraHDVideoDecodes: number;
    /** Returns whether the receiver has the capability `profileName`, such as "+DL" or "+PVR". */
    hasCapability(profileName: string): boolean;
  }

  /** The object for "application/oipfConfiguration": leads to the settings of the receiver. */
  interface OipfConfiguration {
    /** Settings of the receiver; a new object on every read. */
    readonly configuration: Configuration;
  }

  /** What listeners of `OipfDrmAgent` get, by the name of the event. */
  interface OipfDrmAgentEventMap {
    DRMMessageResult: OipfEvent & { readonly msgID: string; readonly resultMsg: string; readonly resultCode: number };
    DRMSystemMessage: OipfEvent & { readonly msg: string; readonly DRMSystemID: string };
  }

  /** The object for "application/oipfDrmAgent". */
  interface OipfDrmAgent {
    /**
     * Called with the message id, the result message and the result code when a message that was sent through
     * this object was answered, once for each. Codes: 0 successful, 1 unknown error, 2 the request cannot be
     * processed, 3 unknown MIME type, 4 user consent needed, 5 unknown DRM system, 6 wrong format. The answer
     * of a common-interface module to a message of type "application/vnd.oipf.cspg-hexbinary" is written in
     * hexadecimal, any other as text.
     */
    onDRMMessageResult: ((this: OipfDrmAgent, msgID: string, resultMsg: string, resultCode: number) => void) | null;
    /** Called with a message that a DRM system sends by itself, and with the DRM system id. */
    onDRMSystemMessage: ((this: OipfDrmAgent, msg: string, DRMSystemID: string) => void) | null;
    /**
     * Sends `msg` of MIME type `msgType` to a DRM system and returns the id that `onDRMMessageResult` will
     * name; `null` when it could not be sent.
     */
    sendDRMMessage(msgType: string, msg: string, DRMSystemID: string): string | null;
    /**
     * Calls `listener` with an `Event` whenever the event named `type` (without "on") is fired. A function is
     * stored once per event name; anything but a function is ignored. The order among listeners is not
     * defined.
     */
    addEventListener<K extends keyof OipfDrmAgentEventMap>(type: K,
      listener: (this: OipfDrmAgent, event: OipfDrmAgentEventMap[K]) => void, useCapture?: boolean): void;
    /**
     * Stops calling `listener`. The function is removed from every event of this object, whatever `type`
     * says. Removing a function that was never added does nothing.
     */
    removeEventListener<K extends keyof OipfDrmAgentEventMap>(type: K,
      listener: (this: OipfDrmAgent, event: OipfDrmAgentEventMap[K]) => void, useCapture?: boolean): void;
  }

  /** What listeners of `OipfGatewayInfo` get, by the name of the event. */
  interface OipfGatewayInfoEventMap {
    DiscoverCSPGCIPlus: OipfEvent;
  }

  /** The object for "application/oipfGatewayInfo": CI Plus content protection. */
  interface OipfGatewayInfo {
    /** True while a CI Plus module is connected. Throws "SecurityError" unless the application is trusted. */
    readonly isCSPGCIPlusDiscovered: boolean;
    /** True. Throws "SecurityError" unless the application is trusted. */
    readonly isCSPGCIPlusSupported: boolean;
    /**
     * DRM systems of the CI Plus module; a new object on every read. Throws "SecurityError" unless the
     * application is trusted.
     */
    readonly CSPGCIPlusDRMType: StringCollection;
    /** Called without arguments when a CI Plus module is connected, and also when it is disconnected. */
    onDiscoverCSPGCIPlus: ((this: OipfGatewayInfo) => void) | null;
    /**
     * Calls `listener` with an `Event` whenever the event named `type` (without "on") is fired. A function is
     * stored once per event name; anything but a function is ignored. The order among listeners is not
     * defined.
     */
    addEventListener<K extends keyof OipfGatewayInfoEventMap>(type: K,
      listener: (this: OipfGatewayInfo, event: OipfGatewayInfoEventMap[K]) => void, useCapture?: boolean): void;
    /**
     * Stops calling `listener`. The function is removed from every event of this object, whatever `type`
     * says. Removing a function that was never added does nothing.
     */
    removeEventListener<K extends keyof OipfGatewayInfoEventMap>(type: K,
      listener: (this: OipfGatewayInfo, event: OipfGatewayInfoEventMap[K]) => void, useCapture?: boolean): void;
  }

  /** The object for "application/oipfParentalControlManager". */
  interface OipfParentalControlManager {
    /** Rating schemes that the receiver knows, which is one: "dvb-si". A new object on every read. */
    readonly parentalRatingSchemes: ParentalRatingSchemeCollection;
  }

  /** What listeners of `OipfSearchManager` get, by the name of the event. */
  interface OipfSearchManagerEventMap {
    MetadataSearch: OipfEvent & { readonly search: MetadataSearch; readonly state: number };
  }

  /** The object for "application/oipfSearchManager". */
  interface OipfSearchManager {
    /**
     * Called with the `MetadataSearch` and its new state, one of the `STATE_` constants of `SearchResults`.
     * It may be set after the search was made; it is never called from within a call of the page.
     */
    onMetadataSearch: ((this: OipfSearchManager, search: MetadataSearch, state: number) => void) | null;
    /**
     * Returns a new search over `searchTarget`, one of the `TARGET_` constants of `MetadataSearch`; `null`
     * for any other number, and when the receiver refuses.
     */
    createSearch(searchTarget: number): MetadataSearch | null;
    /** Returns the channel configuration. */
    getChannelConfig(): ChannelConfig;
    /**
     * Calls `listener` with an `Event` whenever the event named `type` (without "on") is fired. A function is
     * stored once per event name; anything but a function is ignored. The order among listeners is not
     * defined.
     */
    addEventListener<K extends keyof OipfSearchManagerEventMap>(type: K,
      listener: (this: OipfSearchManager, event: OipfSearchManagerEventMap[K]) => void, useCapture?: boolean): void;
    /**
     * Stops calling `listener`. The function is removed from every event of this object, whatever `type`
     * says. Removing a function that was never added does nothing.
     */
    removeEventListener<K extends keyof OipfSearchManagerEventMap>(type: K,
      listener: (this: OipfSearchManager, event: OipfSearchManagerEventMap[K]) => void, useCapture?: boolean): void;
  }

  /** What listeners of `OipfVideoBroadcast` get, by the name of the event. */
  interface OipfVideoBroadcastEventMap {
    ChannelChangeError: OipfEvent & { readonly channel: number; readonly error: number };
    PlayStateChange: OipfEvent & { readonly state: number; readonly error: number | undefined };
    ChannelChangeSucceeded: OipfEvent & { readonly channel: Channel | null };
    FullScreenChange: OipfEvent;
    ProgrammesChanged: OipfEvent;
    ParentalRatingChange: OipfEvent & { readonly contentID: undefined; readonly rating: ParentalRatingCollection; readonly DRMSystemID: number | null };
    ParentalRatingError: OipfEvent;
    DRMRightsError: OipfEvent;
    SelectedComponentChanged: OipfEvent & { readonly componentType: number };
    SelectedComponentChange: OipfEvent & { readonly componentType: number };
  }

  /**
   * The object for "video/broadcast": live television. What it asks of the receiver is answered later by
   * events.
   */
  interface OipfVideoBroadcast {
    /** Component type of video. */
    readonly COMPONENT_TYPE_VIDEO: 0;
    /** Component type of audio. */
    readonly COMPONENT_TYPE_AUDIO: 1;
    /** Component type of subtitles. */
    readonly COMPONENT_TYPE_SUBTITLE: 2;
    /**
     * Width in pixels, for the page to keep; the element's layout decides where video is shown. Throws
     * "TypeError" for anything but a number.
     */
    width: number;
    /**
     * Height in pixels, for the page to keep; the element's layout decides where video is shown. Throws
     * "TypeError" for anything but a number.
     */
    height: number;
    /** True in full-screen mode. */
    readonly fullScreen: boolean;
    /**
     * Play state: 0 unrealized, 1 connecting, 2 presenting, 3 stopped. Writing a number changes only what is
     * read back, until the receiver reports the next state; throws "TypeError" for anything else.
     */
    playState: number;
    /**
     * Channel that is being presented; `null` when there is none or the application is not related to a
     * broadcast.
     */
    readonly currentChannel: Channel | null;
    /**
     * Programmes of the current channel; `null` when there are none or the application is not related to a
     * broadcast.
     */
    readonly programmes: ProgrammeCollection | null;
    /**
     * Called when a channel change failed, with the channel's number in the receiver, which is no `Channel`,
     * and the error state as the receiver reports it: 0 not supported, 1 no signal, 2 tuner in use by another
     * object, 3 locked by parental control, 4 encrypted without a key, 5 unknown channel, 6 interrupted by
     * another channel change, 7 a recording forbids it, 8 address of an IP channel not resolved, 9 too little
     * bandwidth, 10 no channel list to step through, 11 insufficient resources, 12 not found in its transport
     * stream, 100 unidentified.
     */
    onChannelChangeError: ((this: OipfVideoBroadcast, channel: number, error: number) => void) | null;
    /**
     * Called with the new `playState` and the error state, which is `undefined` when there is no error and
     * else as for `onChannelChangeError`.
     */
    onPlayStateChange: ((this: OipfVideoBroadcast, state: number, error: number | undefined) => void) | null;
    /** Called with the new `Channel`, or `null` for no channel, when a channel change succeeded. */
    onChannelChangeSucceeded: ((this: OipfVideoBroadcast, channel: Channel | null) => void) | null;
    /** Called without arguments when `fullScreen` has changed. */
    onFullScreenChange: ((this: OipfVideoBroadcast) => void) | null;
    /** Never called: the receiver does not report changed programmes. */
    onProgrammesChanged: ((this: OipfVideoBroadcast, ...values: any[]) => void) | null;
    /**
     * Called with `undefined`, a `ParentalRatingCollection` and the DRM system id (a number or `null`) when
     * the rating changes.
     */
    onParentalRatingChange: ((this: OipfVideoBroadcast, contentID: undefined, rating: ParentalRatingCollection, DRMSystemID: number | null) => void) | null;
    /** Never called: the receiver does not report rating errors of broadcasts. */
    onParentalRatingError: ((this: OipfVideoBroadcast, ...values: any[]) => void) | null;
    /** Never called: the receiver does not report rights errors of broadcasts. */
    onDRMRightsError: ((this: OipfVideoBroadcast, ...values: any[]) => void) | null;
    /**
     * Called with the component type, one of the `COMPONENT_TYPE_` constants, when another component was
     * selected. Listeners hear it also as "SelectedComponentChange".
     */
    onSelectedComponentChanged: ((this: OipfVideoBroadcast, componentType: number) => void) | null;
    /**
     * Returns the channel configuration. Throws "SecurityError" when the application is not related to a
     * broadcast.
     */
    getChannelConfig(): ChannelConfig;
    /**
     * Starts to present the current channel; `onPlayStateChange` tells when it is seen. Throws
     * "SecurityError" when the application is not related to a broadcast.
     */
    bindToCurrentChannel(): void;
    /**
     * Returns a channel for `setChannel`, named either by `idType`, delivery system descriptor and service id
     * (three arguments), or by `idType`, original network id, transport stream id and service id (four
     * numbers). `idType` is one of the `ID_` constants of `Channel`. Returns `null` for anything else. A
     * descriptor with a byte 0 reaches the receiver only up to that byte; the log warns of it when the
     * channel is set.
     */
    createChannelObject(idType: number, dsd: string, sid: number): Channel | null;
    createChannelObject(idType: number, onid: number, tsid: number, sid: number): Channel | null;
    /**
     * Asks the receiver to change to `channel`; what came of it is told by `onChannelChangeSucceeded` or
     * `onChannelChangeError`. A `null` channel stops the presentation without stopping the application.
     * Returns `null`, also for arguments that make no sense. The other two arguments have no effect.
     */
    setChannel(channel: Channel | null, trickplay?: boolean, contentAccessDescriptorURL?: string): null;
    /** Asks the receiver to change to the previous channel of its list; answered as `setChannel` is. */
    prevChannel(): void;
    /** Asks the receiver to change to the next channel of its list; answered as `setChannel` is. */
    nextChannel(): void;
    /**
     * Enters or leaves full-screen mode. Does nothing and returns `null` when the application is not related
     * to a broadcast.
     */
    setFullScreen(fullscreen: boolean): void;
    /** Gives the decoder back; the receiver decides what is shown. */
    release(): void;
    /** Stops the presentation; `bindToCurrentChannel` resumes it. */
    stop(): void;
    /**
     * Returns the components of one type, or of all types (video, audio, subtitles in this order) without an
     * argument, at the time of the call. Returns `null` for a number that is no component type.
     */
    getComponents(componentType?: number | null): AVComponentCollection | null;
    /** Returns like `getComponents`, `null` included, but only the components that are being presented. */
    getCurrentActiveComponents(componentType?: number | null): AVComponentCollection | null;
    /** Presents this component. */
    selectComponent(component: AVComponent): void;
    /** Presents the receiver's choice of this component type. */
    selectComponent(componentType: number): void;
    /** Stops presenting this component. */
    unselectComponent(component: AVComponent): void;
    /** Stops presenting every component of this type. */
    unselectComponent(componentType: number): void;
    /**
     * Calls `listener` for each trigger of the stream event `eventName` described at `targetURL`, with the
     * `StreamEvent`. Adding it twice calls it twice. Does nothing and returns `null` unless there are three
     * arguments: two texts and a function.
     */
    addStreamEventListener(targetURL: string, eventName: string, listener: (event: StreamEvent) => void): void;
    /**
     * Ends what `addStreamEventListener` began with the same three arguments; without a match it does
     * nothing. Returns `null` unless there are three arguments: two texts and a function.
     */
    removeStreamEventListener(targetURL: string, eventName: string, listener: (event: StreamEvent) => void): void;
    /** Has no effect; called for the element that shows the object. */
    setMimeType(type: string): void;
    /**
     * Has no effect; called with the attributes of the element that shows the object, each a text by its
     * name.
     */
    setAttributes(attributes: { [name: string]: string }): void;
    /** Places the video, in pixels of the page; called for the element that shows the object. */
    setWindow(x: number, y: number, width: number, height: number): void;
    /**
     * Calls `listener` with an `Event` whenever the event named `type` (without "on") is fired. A function is
     * stored once per event name; anything but a function is ignored. The order among listeners is not
     * defined.
     */
    addEventListener<K extends keyof OipfVideoBroadcastEventMap>(type: K,
      listener: (this: OipfVideoBroadcast, event: OipfVideoBroadcastEventMap[K]) => void, useCapture?: boolean): void;
    /**
     * Stops calling `listener`. The function is removed from every event of this object, whatever `type`
     * says. Removing a function that was never added does nothing.
     */
    removeEventListener<K extends keyof OipfVideoBroadcastEventMap>(type: K,
      listener: (this: OipfVideoBroadcast, event: OipfVideoBroadcastEventMap[K]) => void, useCapture?: boolean): void;
  }

  /** The parental rating of a programme or of the receiver's lock. */
  interface ParentalRating {
    /** The rating as text; `undefined` when the scheme is not "dvb-si". */
    readonly name: string | undefined;
    /** Name of the rating scheme. */
    readonly scheme: string;
    /** The rating as a number; `undefined` when the scheme is not "dvb-si". */
    readonly value: number | undefined;
    /** Labels that go with the rating, one bit each; 0 for none. */
    readonly labels: number;
    /** Region in which the rating applies; may be empty. */
    readonly region: string;
  }

  /** An ordered list of ratings. */
  interface ParentalRatingCollection {
    /** Number of ratings. */
    readonly length: number;
    /**
     * Returns the rating at `index`, counted from 0, a new object on every call; `undefined` past the end.
     * `collection[index]` reads the same.
     */
    item(index: number): ParentalRating | undefined;
    /**
     * Appends a rating to this collection, which changes nothing in the receiver. `region` is `null` for
     * everywhere.
     */
    addParentalRating(scheme: string, name: string, value: number, labels: number, region: string | null): void;
    /** The same as `item(index)`. */
    readonly [index: number]: ParentalRating;
  }

  /** A parental rating scheme. Its labels are not listed: ratings are ages. */
  interface ParentalRatingScheme {
    /** Name of the scheme: "dvb-si". */
    readonly name: string;
    /**
     * The rating that the receiver's lock is set to, asked of the receiver on every read; its `value` is 0
     * when nothing is locked.
     */
    readonly threshold: ParentalRating;
    /** Number of labels. */
    readonly length: number;
    /** Returns -1: the labels are not listed. */
    indexOf(ratingValue: string): number;
    /** Returns `null`: there are no icons. */
    iconUri(index: number): string | null;
    /** Returns `undefined`: the labels are not listed. */
    item(index: number): string | undefined;
  }

  /** A fixed, ordered list of rating schemes. */
  interface ParentalRatingSchemeCollection {
    /** Number of schemes. */
    readonly length: number;
    /**
     * Returns the scheme at `index`, counted from 0, a new object on every call; `undefined` past the end.
     * `collection[index]` reads the same.
     */
    item(index: number): ParentalRatingScheme | undefined;
    /** Returns the scheme named `name`, upper and lower case told apart; `undefined` when there is none. */
    getParentalRatingScheme(name: string): ParentalRatingScheme | undefined;
    /** The same as `item(index)`. */
    readonly [index: number]: ParentalRatingScheme;
  }

  /**
   * Makes the native objects behind `object` elements and `oipfObjectFactory`. Every call makes a new object.
   */
  interface PrivateObjectFactory {
    /** Makes the object for "video/broadcast". */
    createVideoBroadcastObject(): OipfVideoBroadcast;
    /** Makes the object for media from the network. */
    createVideoMpegObject(): OipfAVControl;
    /** Makes the object for "application/oipfApplicationManager". */
    createApplicationManagerObject(): OipfApplicationManager;
    /** Makes the object for "application/oipfCapabilities". */
    createCapabilitiesObject(): OipfCapabilities;
    /** Makes a channel configuration. */
    createChannelConfig(): ChannelConfig;
    /** Makes the object for "application/oipfConfiguration". */
    createConfigurationObject(): OipfConfiguration;
    /**
     * Makes the object for "application/oipfDrmAgent". Throws "TypeError" when the receiver does not support
     * it.
     */
    createDrmAgentObject(): OipfDrmAgent;
    /** Makes the object for "application/oipfGatewayInfo". */
    createGatewayInfoObject(): OipfGatewayInfo;
    /** Makes the object for "application/oipfParentalControlManager". */
    createParentalControlManagerObject(): OipfParentalControlManager;
    /**
     * Makes the object for "application/oipfSearchManager". Throws "TypeError" when the receiver does not
     * support it.
     */
    createSearchManagerObject(): OipfSearchManager;
  }

  /** One programme of a broadcast channel. */
  interface Programme {
    /** `programmeIDType` of a content reference identifier (CRID). */
    readonly ID_TVA_CRID: 0;
    /** `programmeIDType` of a DVB event id. */
    readonly ID_DVB_EVENT: 1;
    /** `programmeIDType` of a group CRID. */
    readonly ID_TVA_GROUP_CRID: 2;
    /** Title. */
    readonly name: string;
    /** Long title; `undefined` when it is not known. */
    readonly longName: string | undefined;
    /** Description; may be empty. */
    readonly description: string;
    /** Long description; `undefined` when it is not known. */
    readonly longDescription: string | undefined;
    /** Start, in seconds since 1970. */
    readonly startTime: number;
    /** Duration in seconds. */
    readonly duration: number;
    /** The `ccid` of the programme's channel. */
    readonly channelID: string;
    /** Number of the episode; `undefined` when it is not known. */
    readonly episode: number | undefined;
    /** Number of episodes of the series; `undefined` when it is not known. */
    readonly totalEpisodes: number | undefined;
    /** Identifier of the programme, of the kind that `programmeIDType` tells. */
    readonly programmeID: string;
    /** Kind of `programmeID`: one of the `ID_` constants. */
    readonly programmeIDType: number;
    /** Parental ratings; an empty collection when there are none. */
    readonly parentalRating: ParentalRatingCollection;
    /**
     * Returns the programme's broadcast descriptors with this tag (and this extension and private data
     * identifier, where they are given), one text a descriptor with one character per byte (0 to 255); `null`
     * when there are none.
     */
    getSIDescriptors(descriptorTag: number, descriptorTagExtension?: number, privateDataSpecifier?: number): StringCollection | null;
  }

  /** A fixed, ordered list of programmes. */
  interface ProgrammeCollection {
    /** Number of programmes. */
    readonly length: number;
    /**
     * Returns the programme at `index`, counted from 0, a new object on every call; `undefined` past the end.
     * `collection[index]` reads the same.
     */
    item(index: number): Programme | undefined;
    /** The same as `item(index)`. */
    readonly [index: number]: Programme;
  }

  /** A condition on programmes, made by `createQuery`. It never changes; combining queries makes new ones. */
  interface Query {
    /** Comparison: the field equals the value. */
    readonly COMPARISON_EQUAL: 0;
    /** Comparison: the field does not equal the value. */
    readonly COMPARISON_NOT_EQUAL: 1;
    /** Comparison: the field is greater than the value. */
    readonly COMPARISON_GREATER: 2;
    /** Comparison: the field is greater than or equal to the value. */
    readonly COMPARISON_GREATER_OR_EQUAL: 3;
    /** Comparison: the field is less than the value. */
    readonly COMPARISON_LESS: 4;
    /** Comparison: the field is less than or equal to the value. */
    readonly COMPARISON_LESS_OR_EQUAL: 5;
    /** Comparison: the field's text contains the value. */
    readonly COMPARISON_CONTAINS: 6;
    /** Number of no field: a condition that every programme meets. */
    readonly FIELD_ANY: 0;
    /** Number of the field "Programme.name". */
    readonly FIELD_NAME: 1;
    /** Number of the field "Programme.longName". */
    readonly FIELD_LONG_NAME: 2;
    /** Number of the field "Programme.description". */
    readonly FIELD_DESCRIPTION: 3;
    /** Number of the field "Programme.longDescription". */
    readonly FIELD_LONG_DESCRIPTION: 4;
    /** Number of the field "Programme.startTime". */
    readonly FIELD_START_TIME: 5;
    /** Number of the field "Programme.duration". */
    readonly FIELD_DURATION: 6;
    /** Number of the field "Programme.channelID", and of a channel constraint. */
    readonly FIELD_CHANNEL_ID: 7;
    /** Number of the field "Programme.episode". */
    readonly FIELD_EPISODE: 8;
    /** Number of the field "Programme.totalEpisodes". */
    readonly FIELD_TOTAL_EPISODES: 9;
    /** Number of the field "Programme.programmeID". */
    readonly FIELD_PROGRAMME_ID: 10;
    /** Number of the field "Programme.programmeIDType". */
    readonly FIELD_PROGRAMME_ID_TYPE: 11;
    /** Number of the field "Programme.parentalRating". */
    readonly FIELD_PARENTAL_RATING: 12;
    /**
     * Number of the time at which a programme ends, which has no name for pages: `findProgrammesFromStream`
     * begins with what is still on then.
     */
    readonly FIELD_END_TIME: 13;
    /** Returns a query for programmes that meet both conditions; `null` when the receiver cannot make it. */
    and(query: Query): Query | null;
    /**
     * Returns a query for programmes that meet at least one of the two conditions; `null` when the receiver
     * cannot make it.
     */
    or(query: Query): Query | null;
    /**
     * Returns a query for programmes that do not meet this condition; `null` when the receiver cannot make
     * it.
     */
    not(): Query | null;
  }

  /** The part of a search's results that `getResults` fetched last. */
  interface SearchResults {
    /** State of a search: finished, the results can be read. */
    readonly STATE_FINISHED: 0;
    /** State of a search: idle, after `abort` or a change of what is looked for. */
    readonly STATE_IDLE: 3;
    /** State of a search: failed. */
    readonly STATE_FAILED: 4;
    /** Number of programmes that can be read; 0 until they have been fetched. */
    readonly length: number;
    /** Position of the first of them among all results. */
    readonly offset: number;
    /** Number of all results; 0 until the search has finished. */
    readonly totalSize: number;
    /**
     * Fetches up to `count` results from `offset` on, counted from 0; starts the search where that has not
     * happened. What was fetched before is dropped. The search manager's `onMetadataSearch` tells when the
     * results can be read, never before this call has returned; of several calls under way the last one
     * counts. Always returns `false`: no result is there at once. When the receiver has refused any part of
     * what the search was to look for, or cannot search, the search ends in `STATE_FAILED`.
     */
    getResults(offset: number, count: number): boolean;
    /** Stops a running search, drops the results, and removes the search's query, constraints and order. */
    abort(): void;
    /**
     * Returns the programme at `index`, counted from 0, a new object on every call; `undefined` past the end,
     * and `null` for a programme that the receiver has dropped since. `results[index]` reads the same.
     */
    item(index: number): Programme | null | undefined;
    /** The same as `item(index)`. */
    readonly [index: number]: Programme | null;
  }

  /** A trigger carried in the broadcast, given to a listener added with `addStreamEventListener`. */
  interface StreamEvent {
    /** Event phase "capturing"; stream events have no phases. */
    readonly CAPTURING_PHASE: 1;
    /** Event phase "at target"; stream events have no phases. */
    readonly AT_TARGET: 2;
    /** Event phase "bubbling"; stream events have no phases. */
    readonly BUBBLING_PHASE: 3;
    /** Name of the event. */
    readonly name: string;
    /** Payload as text: two upper-case hexadecimal digits a byte, no separators. */
    readonly data: string;
    /** Payload taken as UTF-8 text; ill-formed bytes are left out. */
    readonly text: string;
    /** "trigger". */
    readonly status: string;
  }

  /** A fixed, ordered list of texts. */
  interface StringCollection {
    /** Number of texts. */
    readonly length: number;
    /**
     * Returns the text at `index`, counted from 0; `undefined` past the end. `collection[index]` reads the
     * same.
     */
    item(index: number): string | undefined;
    /** The same as `item(index)`. */
    readonly [index: number]: string;
  }
}
