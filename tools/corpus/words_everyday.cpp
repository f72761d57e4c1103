#include "vocabulary.h"

namespace corpus {

namespace {

constexpr Rule kPeopleAndThings[] = {
    {"person", Split::OpenWords, kBroad, R"(
        man/men woman/women boy girl child/children mother father brother sister friend neighbour
        captain pilot fisherman/fishermen farmer miller schoolmaster widow carpenter stranger
        daughter son cousin aunt uncle doctor parson lodger keeper sailor blacksmith baker clerk
        ferryman/ferrymen shopkeeper traveller landlord innkeeper magistrate housekeeper cook
        gardener carrier postman/postmen tailor apprentice labourer sexton soldier pedlar drover
        mason cooper thatcher weaver groom nurse governess lawyer bailiff constable fiddler
        shoemaker wheelwright beggar guest tenant nephew niece grandmother grandfather visitor
        bridegroom bride orphan smuggler helmsman/helmsmen boatswain midshipman/midshipmen squire
        curate steward milliner seamstress laundress scholar bachelor spinster invalid pauper
        overseer surveyor excise-man/excise-men net-maker rope-maker lamplighter watchman/watchmen
        shepherd dairymaid ploughboy reaper mower shearer hedger woodman/woodmen poacher tinker
        chandler saddler glazier potter dyer fuller brewer maltster barber apothecary midwife
        huckster auctioneer coachman/coachmen ostler stable-boy kitchen-maid butler footman/footmen
        godfather godmother stepson sweetheart rival creditor debtor witness juryman/jurymen)"},
    {"thing", Split::OpenWords, kBroad, R"(
        book letter lamp rope coat hat net glass cup plate candle bottle knife/knives basket box
        key clock saddle lantern chair mirror pillow blanket ring ribbon shawl apron boot glove
        stocking button needle purse coin shilling parcel trunk bag umbrella stick whip bridle oar
        anchor spade hammer nail saw chain barrel sack bucket ladder kettle saucepan pen paper
        newspaper picture drawer almanac ledger bible hymn-book fiddle drum pipe whistle scythe
        sickle rake basin jug tankard spoon fork thimble bobbin spindle shuttle bundle cradle
        cushion quilt candlestick snuff-box tobacco-jar telescope compass chart pistol musket sword
        powder-horn hour-glass inkstand quill penknife/penknives spectacle-case walking-stick
        handkerchief necktie waistcoat petticoat bonnet veil cloak jacket breeches/breeches belt
        buckle crust loaf/loaves cake pie pudding cheese ham apple pear plum cherry nut herring
        mackerel lobster oyster sheaf/sheaves turnip cabbage onion egg rose lily violet nosegay
        wreath locket bracelet brooch comb hairpin looking-glass razor towel bellows poker tea-pot
        coffee-mill milk-pail churn sieve mallet chisel plane gimlet anvil horseshoe bit halter
        fishing-rod hook crab-pot tarpaulin boat-hook tiller pulley block marlinspike lead-line
        receipt will deed map drawing sampler song-book sermon valentine portrait miniature)"},
    {"spot", Split::OpenWords, kBroad, R"(
        house door window room table wall gate path tree bed garden bridge harbour quay lane
        kitchen stair roof chimney church tower mill shore sand beach cliff island river stream
        pool marsh meadow hedge orchard barn stable cottage cellar attic yard well cupboard shelf
        market shop inn tavern street square corner town village hill valley wood forest moor heath
        bog ditch bank ford ferry weir lock barge schooner cutter dinghy hull deck cabin hatch buoy
        beacon lighthouse jetty slipway capstan hearth oven pew pulpit grave churchyard headstone
        steeple signpost milestone turnpike tollgate field furrow stile spinney copse warren quarry
        kiln forge smithy brewery bakery dairy granary hayloft pigsty kennel henhouse dovecote
        greenhouse arbour terrace lawn fountain sundial archway passage landing parlour pantry
        scullery nursery library schoolroom vestry belfry chancel almshouse workhouse
        counting-house warehouse ropewalk sail-loft boat-house sea-wall breakwater sandbank shoal
        headland creek inlet estuary saltpan dune shingle rock-pool cave crag ridge gorge glen
        hollow clearing avenue crossroads common green pound pump trough mooring gangway)"},
    {"beast", Split::OpenWords, kBroad, R"(
        dog horse cat gull cow calf/calves pony donkey pig sheep/sheep lamb fox hare rabbit otter
        badger mouse/mice rat bee wasp moth heron swallow sparrow thrush rook owl crow hen duck
        goose/geese swan lark robin wren starling jackdaw magpie kestrel hawk pigeon cuckoo
        nightingale curlew plover cormorant seal porpoise trout eel pike adder toad frog snail
        spider beetle cricket grasshopper butterfly bat hedgehog squirrel stoat weasel stag mule
        ox/oxen bullock heifer ewe ram goat kid foal mare colt terrier spaniel sheepdog)"},
    {"weather", Split::Words, kBroad, R"(
        wind rain sun moon night morning evening storm cloud snow frost mist fog sea tide wave star
        sky winter summer autumn spring afternoon noon twilight dawn sunset daylight darkness
        thunder lightning hail breeze gale squall drizzle shower rainbow haze dew rime icicle
        moonlight starlight candlelight firelight smoke spark shadow echo silence swell surf foam
        spray current ebb flood heat cold thaw season harvest tempest calm undertow moonrise)"},
    {"part", Split::Words, kBroad, R"(
        face hand eye voice heart shoulder arm head hair finger elbow knee foot/feet lip cheek chin
        tooth/teeth tongue ear eyebrow forehead beard step breath tear neck throat brow ankle heel
        back breast wrist palm eyelid temple countenance figure hands+and+feet complexion
        profile)"},
    {"idea", Split::OpenWords, kBroad, R"(
        time way word thought mind life reason question answer trouble name story truth business
        money work trade luck hope fear sorrow joy anger pride shame love marriage death birth age
        health illness strength weakness patience temper humour company friendship quarrel promise
        secret bargain debt rent inheritance journey voyage errand visit return absence arrival
        departure accident misfortune danger escape rescue mystery rumour gossip news opinion
        advice warning intention purpose plan decision habit custom duty favour kindness cruelty
        courage caution curiosity suspicion doubt certainty memory remembrance dream fancy notion
        feeling manner conscience honour reputation fortune poverty comfort pleasure disappointment
        surprise astonishment satisfaction regret resentment jealousy affection tenderness sympathy
        pity contempt respect obedience authority liberty justice mercy blame guilt innocence faith
        prayer providence fate chance circumstance condition situation experience knowledge
        learning ignorance wisdom folly vanity ambition idleness industry prudence extravagance
        economy beginning end difference likeness resemblance beauty plainness solitude society
        conversation acquaintance attachment engagement courtship proposal refusal consent
        objection argument explanation apology excuse confession complaint remark speech phrase
        expression glance look smile frown laugh sigh gesture attitude movement pause interval
        distance neighbourhood seafaring husbandry scruple whim grievance loyalty treachery
        perplexity remorse delight dignity simplicity sincerity hospitality melancholy merriment
        agitation composure indifference eagerness reluctance weariness vigilance thrift)"},
};

constexpr Rule kDeedsAndQualities[] = {
    {"handle", Split::Words, kBroad, R"(
        take/took/taken hold/held/held bring/brought/brought carry open close touch drop lift
        find/found/found lose/lost/lost keep/kept/kept hide/hid/hidden buy/bought/bought
        sell/sold/sold lend/lent/lent borrow steal/stole/stolen want mend clean fill empty wash
        wrap tie untie fasten loosen throw/threw/thrown fling/flung/flung seize clutch grasp pull
        push draw/drew/drawn break/broke/broken burn weigh measure examine count polish
        show/showed/shown fetch remove replace offer refuse choose/chose/chosen admire gather share
        turn raise lower upset/upset/upset shake/shook/shaken leave/left/left discover
        lay/laid/laid set/set/set toss grip handle finger produce display exchange pawn inherit
        recover bestow unwrap unlock bury rescue paint varnish sharpen patch stitch)"},
    {"feel", Split::Words, kBroad, R"(
        know/knew/known love hate fear trust doubt remember forget/forgot/forgotten watch follow
        meet/met/met call help save blame praise thank forgive/forgave/forgiven expect suspect
        understand/understood/understood mistake/mistook/mistaken recognise notice observe pursue
        avoid cheat deceive mock tease flatter comfort soothe trouble disturb frighten startle
        astonish amuse please vex anger annoy puzzle persuade advise command obey resist defy marry
        court envy pity despise respect honour nurse shelter wake/woke/woken kiss abandon desert
        join serve see/saw/seen hear/heard/heard like miss need believe question guide warn delay
        leave/left/left pass detain dismiss rebuke reproach console encourage mislead/misled/misled
        outwit shun regard esteem cherish neglect overlook overtake/overtook/overtaken)"},
    {"think", Split::Words, kBroad, R"(
        know/knew/known fear trust doubt remember forget/forgot/forgotten explain describe
        understand/understood/understood believe confess deny discuss mention regret expect conceal
        settle consider bear/bore/borne suffer endure need recall guess imagine dread welcome
        lament repent resent excuse justify disguise betray examine dismiss share value earn
        deserve acknowledge hint+at/hinted+at/hinted+at reflect+upon/reflected+upon/reflected+upon
        speak+of/spoke+of/spoken+of)"},
    {"move", Split::Words, kZipf, R"(
        go/went/gone come/came/come walk look stand/stood/stood sit/sat/sat turn run/ran/run wait
        live stay lie/lay/lain return fall/fell/fallen rise/rose/risen pause stop hurry wander step
        climb creep/crept/crept slip ride/rode/ridden drift sleep/slept/slept linger loiter hasten
        stroll limp stumble stagger plunge leap/leapt/leapt scramble crouch kneel/knelt/knelt lean
        bow nod smile laugh weep/wept/wept sigh shiver tremble blush frown stare gaze glance listen
        whistle sing/sang/sung hum cough snore yawn gossip quarrel toil labour dawdle vanish appear
        disappear emerge retreat advance halt swim/swam/swum wade paddle trudge march gallop trot
        flee/fled/fled)"},
    {"blow", Split::Words, kBroad, R"(
        rise/rose/risen fall/fell/fallen pass come/came/come return fade gather vanish
        grow+cold/grew+cold/grown+cold sink/sank/sunk drift linger settle deepen break/broke/broken
        change thicken clear sweep+past/swept+past/swept+past spread/spread/spread
        hang+low/hung+low/hung+low drop glimmer roar sigh whisper moan murmur howl lift
        steal+away/stole+away/stolen+away die+away/died+away/died+away
        lie+still/lay+still/lain+still)"},
    {"say", Split::Words, kSteep, R"(
        say/said/said reply answer ask cry exclaim murmur whisper continue return add
        begin/began/begun observe remark inquire repeat mutter insist admit/admitted protest shout
        growl declare suggest conclude grumble interrupt falter)"},
    {"adj", Split::OpenWords, kBroad, R"(
        old little good great young long new poor dark last small quiet strange white black cold
        warm high low deep heavy light bright pale grey green brown red blue yellow clear soft hard
        rough smooth sharp dull thin thick broad narrow straight crooked empty full open close near
        distant early late quick slow sudden gentle fierce wild tame fresh stale wet dry damp muddy
        dusty sandy stony rocky steep level hollow round square wooden iron leather woollen linen
        silver golden neat tidy untidy handsome pretty plain ugly beautiful clumsy awkward stiff
        silent noisy loud faint feeble stout tall short upright solemn grave gay lively dreary
        dismal gloomy lonely crowded ancient modern ruined broken cracked tattered faded polished
        painted whitewashed thatched mossy leafy bare windy stormy calm misty foggy frosty snowy
        rainy sunny moonlit starlit shadowy dim mysterious familiar unfamiliar curious common
        uncommon ordinary extraordinary particular general private public sacred wicked doubtful
        certain uncertain necessary needless useful useless worthless precious dear cheap costly
        tolerable agreeable disagreeable pleasant unpleasant respectable venerable homely rustic
        weather-beaten half-finished long-forgotten well-worn old-fashioned far-off low-roofed
        salt-stained moss-grown wind-bent fireless sunless starless moonless fathomless nameless
        fruitless spotless shapeless colourless threadbare lopsided rickety ramshackle rusty mouldy
        musty greasy sooty smoky grimy fragrant scented fragile brittle slender massive enormous
        tiny scanty ample spacious)"},
    {"trait", Split::OpenWords, kBroad, R"(
        old young good poor strange quiet happy unhappy sad sorry glad angry tired kind proud
        honest wise foolish simple clever stupid learned ignorant humble vain modest bold timid
        brave cowardly careful careless patient impatient cruel generous mean greedy idle busy
        sober drunken rich wealthy ragged shabby nimble lame blind deaf dumb vigorous lean stooping
        weary hungry thirsty sleepy wakeful cheerful merry bitter faithful cunning tender earnest
        sincere anxious uneasy nervous restless contented discontented jealous suspicious bashful
        obstinate stubborn gruff hoarse drowsy breathless speechless motionless sunburnt
        bare-headed broad-shouldered good-natured ill-tempered guilty innocent pious thrifty
        talkative taciturn inquisitive absent-minded light-hearted hard-working short-sighted
        soft-spoken hot-headed red-haired grey-bearded freckled portly gaunt comely buxom)"},
    {"adv", Split::Words, kZipf, R"(
        again slowly quietly quickly suddenly at+last presently at+once softly carefully gravely
        sadly silently eagerly sharply calmly coldly warmly kindly bitterly abruptly hastily
        patiently impatiently anxiously cheerfully earnestly doubtfully heavily lightly steadily
        unsteadily awkwardly wearily drowsily curiously timidly boldly proudly humbly thoughtfully
        absently frankly bluntly dryly hoarsely feebly faintly clearly plainly aloud together alone
        apart aside indoors homeward backward forward once+more by+and+by now+and+then in+silence
        without+a+word with+a+smile with+a+sigh before+long all+at+once in+a+low+voice
        after+a+while of+a+sudden to+and+fro as+usual for+ever in+earnest with+difficulty
        out+of+doors beyond+question in+vain)"},
    {"still", Split::Words, kZipf, R"(
        still only now then even just never always often perhaps indeed also soon once already
        merely certainly ever surely seldom usually sometimes no+longer by+then afterwards there)"},
    {"degree", Split::Words, kZipf, R"(
        very rather so quite too somewhat almost scarcely hardly nearly wholly altogether perfectly
        remarkably uncommonly particularly exceedingly a+little no+less half more+than+usually)"},
};

} // namespace

RuleBook everydayNouns() {
    return kPeopleAndThings;
}

RuleBook everydayVerbsAndAdjectives() {
    return kDeedsAndQualities;
}

} // namespace corpus
